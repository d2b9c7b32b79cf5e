#pragma once

#include "platform/avi_file.h"
#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/configuration.h"
#include "platform/device_contexts.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/http_request.h"
#include "platform/jpeg_decoder.h"
#include "platform/message_loop.h"
#include "platform/picture_codec.h"
#include "platform/registry.h"
#include "platform/screen.h"
#include "platform/text_mapper.h"

namespace orbelcast {

/// The services that a control is given. They live longer than every control made on them, and everything is called on
/// the one thread of the message loop.
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
  Registry& registry;
  Dialogs& dialogs;
  AviFiles& avi_files;
  const Configuration& configuration;

  /// The same services with one of them replaced, to count, fake or forward its calls.
  Platform With(MessageLoop& other) const {
    return {other,    clock,     screen,          text_mapper, files,   http,      jpeg_decoder,
            pictures, clipboard, device_contexts, registry,    dialogs, avi_files, configuration};
  }
  Platform With(HttpRequestFactory& other) const {
    return {loop,     clock,     screen,          text_mapper, files,   other,     jpeg_decoder,
            pictures, clipboard, device_contexts, registry,    dialogs, avi_files, configuration};
  }
  Platform With(Registry& other) const {
    return {loop,     clock,     screen,          text_mapper, files,   http,      jpeg_decoder,
            pictures, clipboard, device_contexts, other,       dialogs, avi_files, configuration};
  }
  Platform With(Dialogs& other) const {
    return {loop,     clock,     screen,          text_mapper, files, http,      jpeg_decoder,
            pictures, clipboard, device_contexts, registry,    other, avi_files, configuration};
  }
  Platform With(JpegDecoder& other) const {
    return {loop,     clock,     screen,          text_mapper, files,   http,      other,
            pictures, clipboard, device_contexts, registry,    dialogs, avi_files, configuration};
  }
};

}  // namespace orbelcast
