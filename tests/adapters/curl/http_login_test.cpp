#include "adapters/curl/http_login.h"

#include <gmock/gmock.h>

namespace orbelcast {
namespace {

using testing::HasSubstr;

std::string Response(const DigestChallenge& challenge, const Credentials& who, const std::string& client_nonce) {
  const std::string text = DigestAuthorization(challenge, who, "GET", "/dir/index.html", client_nonce, 1);
  const std::size_t begin = text.find("response=\"") + 10;
  return text.substr(begin, text.find('"', begin) - begin);
}

// The examples of RFC 7616, 3.9.1, and RFC 2617, 3.5; without an example there are the "-sess" form and the one of
// servers that do not count, whose results another implementation gave.
TEST(HttpLoginTest, DigestIsComputedAsTheStandardsShowIt) {
  const std::string of_7616 =
      "Digest realm=\"http-auth@example.org\", qop=\"auth, auth-int\", algorithm=MD5, "
      "nonce=\"7ypf/xlj9XXwfDPEoM4URrv/xwf94BcCAzFZH4GiTo0v\", opaque=\"FQhe/qaU925kfnzjCev0ciny7QMkPqMAFRtzCUYo5tdS\"";
  const std::string client_nonce = "f2/wE4q74E6zIJEtWaHKaf5wv/H5QzzpXusqGemxURZJ";
  const Credentials mufasa{"Mufasa", "Circle of Life"};
  auto challenge = DigestChallenge::Find(of_7616);
  ASSERT_TRUE(challenge);
  EXPECT_EQ(Response(*challenge, mufasa, client_nonce), "8ca523f5e9506fed4657c9700eebdbec");
  challenge->hash = DigestChallenge::Hash::kSha256;
  EXPECT_EQ(Response(*challenge, mufasa, client_nonce),
            "753927fa0e85d155564e2e272a28d1802ca10daf4496794697cf8db5856cb6c1");
  challenge->session = true;
  EXPECT_EQ(Response(*challenge, mufasa, client_nonce),
            "2fd51b3a77ad75bad6afad6003e818d767133c46d9e2749e7f5232ae1ea3efd7");

  challenge = DigestChallenge::Find(
      "Basic realm=\"a, Digest nonce=b\", digest REALM = \"testrealm@host.com\" "
      ",nonce=dcd98b7102dd2f0e8b11d0f600bfb0c093,"
      " qop=auth");
  ASSERT_TRUE(challenge);
  EXPECT_EQ(Response(*challenge, {"Mufasa", "Circle Of Life"}, "0a4f113b"), "6629fae49393a05397450978507c4ef1");
  challenge->counts = false;
  EXPECT_EQ(Response(*challenge, {"Mufasa", "Circle Of Life"}, "0a4f113b"), "670fd8c2df070c60b045671b8b24ff02");
}

TEST(HttpLoginTest, TextsAreQuotedAndOddChallengesPassedOver) {
  const auto challenge = DigestChallenge::Find(R"(Digest realm="a \"b\\", nonce="n")");
  ASSERT_TRUE(challenge);
  EXPECT_EQ(challenge->realm, R"(a "b\)");
  EXPECT_THAT(DigestAuthorization(*challenge, {R"(u"x\)", "p"}, "GET", "/", "c", 1),
              HasSubstr(R"(username="u\"x\\", realm="a \"b\\", nonce="n", uri="/")"));
  for (const std::string odd :
       {"", "Digest", "Digest nonce", "Digestnonce=\"a\"", "Digest nonce=\"a\", qop=auth-int", "Digest =\"a\"",
        "nonce=\"a\"", "Digest nonce=\"a\", algorithm=MD4", "Digest nonce=\"a\", realm=\"\x7f\""}) {
    EXPECT_FALSE(DigestChallenge::Find(odd)) << odd;
  }
  EXPECT_FALSE(DigestChallenge::Find("Digest nonce=\"" + std::string(DigestChallenge::kMaxChallengeBytes + 1, 'x')));
  EXPECT_TRUE(DigestChallenge::Find("Digest nonce=\"a\", algorithm=MD4, Digest nonce=\"b\""));
  EXPECT_TRUE(AsksForBasic("Negotiate abc==, basic realm=\"Digest\""));
  EXPECT_FALSE(AsksForBasic("Digest realm=\"Basic, Basic\""));
}

}  // namespace
}  // namespace orbelcast
