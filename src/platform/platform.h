#pragma once

#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/device_contexts.h"
#include "platform/files.h"
#include "platform/http_request.h"
#include "platform/jpeg_decoder.h"
#include "platform/message_loop.h"
#include "platform/picture_codec.h"
#include "platform/screen.h"
#include "platform/text_mapper.h"

/// What the logic needs of the world, one small header a service, and the value types they share.
///
/// A control is given one Platform and keeps the reference: the services live longer than every control made on them.
/// Everything is called on the one thread of the message loop. A service reports failure by its result (false, an empty
/// value) and never throws. There are no globals: a second platform is another set of services, chosen once, where the
/// Platform is put together.
namespace orbelcast {

struct Platform {
  MessageLoop& loop;
  Clock& clock;
  Screen& screen;
  TextMapper& text_mapper;
  Files& files;
  HttpRequestFactory& http;
  JpegDecoder& jpeg_decoder;
  PictureCodec& pictures;
  Clipboard& clipboard;
  DeviceContexts& device_contexts;
};

}  // namespace orbelcast
