#include "adapters/multipart/part_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/http_request.h"

namespace orbelcast {
namespace {

using testing::ElementsAre;

const std::string kPlain = "multipart/x-mixed-replace; boundary=frame";
const std::string kFirst = "\xff\xd8 one\r\n--\n--frames\r\n \xff\xd9";
const std::string kSecond = "\xff\xd8 two \xff\xd9";

/// The bodies of all parts, when the stream comes in pieces of that size.
std::vector<std::string> PartsOf(const std::string& type, std::string_view stream, std::size_t piece) {
  PartReader reader(type);
  std::vector<std::string> parts;
  for (; !stream.empty(); stream.remove_prefix(std::min(piece, stream.size()))) {
    EXPECT_TRUE(reader.Take(stream.substr(0, piece)));
    if (!reader.HasNewest()) continue;
    const auto bytes = reader.TakeNewest().body;
    parts.emplace_back(bytes.Bytes().begin(), bytes.Bytes().end());
  }
  return parts;
}

TEST(PartReaderTest, ReadsWhatCamerasSend) {
  struct Camera {
    const char* what;
    std::string type = kPlain;
    std::string before = "";
    std::string delimiter = "--frame";
    std::string line_end = "\r\n";
    std::string headers = "Content-Type: image/jpeg\r\n";
    std::string empty_line = "\r\n";
    std::string part_end = "\r\n";
  };
  const std::string length = "Content-Length: " + std::to_string(kFirst.size()) + "\r\n";
  const Camera cameras[] = {
      {"no length"},
      {"a length", kPlain, "", "--frame", "\r\n", length},
      {"too small a length", kPlain, "", "--frame", "\r\n", "Content-Length: 4\r\n"},
      {"too large a length", kPlain, "", "--frame", "\r\n", "Content-Length: 4000\r\n"},
      {"no length at all", kPlain, "", "--frame", "\r\n", "Content-Length: -1\r\n"},
      {"LF alone", kPlain, "\n", "--frame", "\n", "Content-Type: image/jpeg\n", "\n", "\n"},
      {"no dashes", kPlain, "", "frame"},
      {"dashes declared", "multipart/x-mixed-replace;boundary=--frame"},
      {"four dashes", "multipart/x-mixed-replace;boundary=--frame", "", "----frame"},
      {"quoted", "Multipart/X-Mixed-Replace; a=b; Boundary=\"fr;ame\" ; c=d", "\r\n", "--fr;ame"},
      {"blanks and dashes behind", "multipart/x-mixed-replace;boundary=--my frame--", "", "--my frame--"},
      {"none declared", "multipart/x-mixed-replace"},
      {"another declared", "multipart/x-mixed-replace; boundary=other"},
      {"text before", kPlain, "Welcome\r\n- to\r\n\r\n--\r\nthis camera\r\n"},
      {"blanks behind", kPlain, "", "--frame", "  \t\r\n"},
      {"no headers", kPlain, "", "--frame", "\r\n", ""},
      {"nothing between", kPlain, "", "--frame", "\r\n", "", ""},
      {"no line end behind a part", kPlain, "", "--frame", "\r\n", length, "\r\n", ""},
  };
  for (const Camera& each : cameras) {
    const std::string begin = each.delimiter + each.line_end + each.headers + each.empty_line;
    const std::string stream =
        each.before + begin + kFirst + each.part_end + begin + begin + kSecond + each.part_end + each.delimiter + "--";
    ASSERT_TRUE(PartReader::Reads(each.type)) << each.what;
    for (const std::size_t piece : {1, 2, 7}) {
      const auto parts = PartsOf(each.type, stream, piece);
      ASSERT_THAT(parts, testing::SizeIs(2)) << each.what << ", pieces of " << piece;
      EXPECT_THAT(parts[0], testing::StartsWith(kFirst.substr(0, kFirst.size() - 1))) << each.what;
      EXPECT_EQ(parts[1], kSecond) << each.what;
    }
    EXPECT_THAT(PartsOf(each.type, stream, stream.size()), ElementsAre(kSecond)) << each.what << ", all at once";
  }
  for (const char* other : {"", "image/jpeg", "multipart/form-data; boundary=x", "multipart/x-mixed-replaced"}) {
    EXPECT_FALSE(PartReader::Reads(other)) << other;
  }
}

TEST(PartReaderTest, APictureIsCompleteBeforeTheNextOneBegins) {
  const std::string jpeg = "\xff\xd8 thumbnail \xff\xd9 picture \xff\xd9";
  const std::string exact = "Content-Length: " + std::to_string(jpeg.size()) + "\r\n\r\n";
  const struct {
    std::string stream;
    std::vector<std::string> parts;
  } cases[] = {
      {exact + jpeg, {jpeg}},
      {exact + jpeg + "\r\n--fra", {jpeg}},
      {exact + jpeg.substr(0, 14), {}},  // ends with the thumbnail's end
      {"\r\n" + jpeg, {jpeg}},
      {"\r\n" + jpeg + "\r\n", {jpeg}},
      {"\r\n" + jpeg + "\r\n--fra", {}},
      {"Content-Length: 999\r\n\r\n" + jpeg, {}},
      {"Content-Length: 4\r\n\r\ntext", {}},
      {"Content-Length: 4\r\n\r\ntext\r\n--frame\r\n", {"text"}},
  };
  for (const auto& [stream, parts] : cases) {
    EXPECT_EQ(PartsOf(kPlain, "--frame\r\n" + stream, 1000), parts) << stream;
  }
}

TEST(PartReaderTest, NothingGrowsWithoutBound) {
  const struct {
    std::string beginning, repeated;
    std::size_t most;
  } cases[] = {
      {"", "x", http_limits::kMaxHeaderBytes},
      {"", "text\r\n", http_limits::kMaxHeaderBytes},
      {"--frame\r\n", "X: 1\r\n", http_limits::kMaxHeaderBytes},
      {"--frame\r\n", "x", http_limits::kMaxHeaderBytes},
      {"--frame\r\n\r\n", "--frame ", http_limits::kMaxBodyBytes},
  };
  constexpr std::size_t kPiece = 1 << 14;
  for (const auto& [beginning, repeated, most] : cases) {
    PartReader reader(kPlain);
    std::string piece;
    while (piece.size() < kPiece) piece += repeated;
    std::size_t taken = piece.size();
    for (bool goes_on = reader.Take(beginning); goes_on && taken < 2 * most; taken += piece.size()) {
      goes_on = reader.Take(piece);
    }
    EXPECT_LT(taken, most + 4 * kPiece) << beginning << repeated;
    EXPECT_FALSE(reader.HasNewest());
  }
}

}  // namespace
}  // namespace orbelcast
