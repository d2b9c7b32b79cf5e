#include "adapters/multipart/part_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orbelcast {
namespace {

using Parts = std::vector<std::string>;

const std::string kType = "multipart/x-mixed-replace; boundary=frame";
const std::string kFirst = "\xff\xd8 one\r\n--\n--frames\r\n \xff\xd9";
const std::string kSecond = "\xff\xd8 two \xff\xd9";
const std::string kLength = "Content-Length: " + std::to_string(kFirst.size()) + "\r\n\r\n";

/// The bodies of the parts, when the stream comes in pieces of that size.
Parts PartsOf(const std::string& type, std::string_view stream, std::size_t piece) {
  EXPECT_TRUE(PartReader::Reads(type));
  PartReader reader(type);
  Parts parts;
  for (; !stream.empty(); stream.remove_prefix(std::min(piece, stream.size()))) {
    EXPECT_TRUE(reader.Take(stream.substr(0, piece)));
    if (!reader.HasNewest()) continue;
    const FrameBytes body = reader.TakeNewest().body;
    parts.emplace_back(body.Bytes().begin(), body.Bytes().end());
  }
  return parts;
}

TEST(PartReaderTest, ReadsWhatCamerasSend) {
  const struct {
    std::string type, before, delimiter, headers, end;
  } cameras[] = {
      {kType, "", "--frame\r\n", kLength, "\r\n"},
      {kType, "\n", "--frame\n", "Content-length:4\n\n", "\n"},
      {kType, "\r\n", "--frame \t\r\n", "Content-Length: 4000\r\n\r\n", "\r\n"},
      {kType, "Welcome\r\n- to\r\n\r\n--\r\nthis camera\r\n", "frame\r\n", "Content-Length: -1\r\n\r\n", "\r\n"},
      {kType, "", "--frame\r\n", "", "\r\n"},          // no line between delimiter and picture
      {kType, "", "--longer-frame\r\n", kLength, ""},  // none behind the picture
      {"multipart/x-mixed-replace", "", "--other\r\n", "\r\n", "\r\n"},
      {"multipart/x-mixed-replace;boundary=--my frame--", "", "--my frame--\r\n", "\r\n", "\r\n"},
      {"Multipart/X-Mixed-Replace; a=b; Boundary=\"fr;ame\" ; c=d", "", "fr;ame\r\n", "\r\n", "\r\n"},
  };
  for (const auto& [type, before, delimiter, headers, end] : cameras) {
    const std::string begin = delimiter + headers;
    const std::string stream = before + begin + kFirst + end + begin + begin + kSecond + end + begin;
    for (const std::size_t piece : {1, 2, 7}) {
      EXPECT_EQ(PartsOf(type, stream, piece), Parts({kFirst, kSecond})) << type << stream << piece;
    }
    EXPECT_EQ(PartsOf(type, stream, stream.size()), Parts({kSecond})) << type << stream;
  }
  EXPECT_FALSE(PartReader::Reads("multipart/form-data; boundary=x"));
}

TEST(PartReaderTest, APictureIsCompleteBeforeTheNextOneBegins) {
  for (const auto& [part, parts] : {
           std::pair<std::string, Parts>(kLength + kFirst, {kFirst}),
           {kLength + kFirst + "\r\n--fra", {kFirst}},
           {kLength + kSecond, {}},  // perhaps the end of a thumbnail in the picture
           {"\r\n" + kFirst + "\r\n", {kFirst}},
           {"Content-Length: 4\r\n\r\ntext", {}},
           {"Content-Length: 4\r\n\r\ntext\r\n--frame--", {"text"}},
       }) {
    EXPECT_EQ(PartsOf(kType, "--frame\r\n" + part, 1000), parts) << part;
  }
}

}  // namespace
}  // namespace orbelcast
