#include "OstrelAgent/Containers/TrustBundle.hpp"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(TrustBundle, IsUsedUnchangedWhenItCanBePasted) {
  for (const std::string text :
       {"-----BEGIN CERTIFICATE-----\nMII\n-----END CERTIFICATE-----\n", "EOF \n EOFX\nXEOF\nMII",
        "\n# $HOME \"quoted\" `back` \\\n\tMII \n\n", "Zertifikat für Zoë\n"}) {
    EXPECT_EQ(trustbundle::usableText(text), text);
  }
  EXPECT_TRUE(trustbundle::usableText(std::string(std::size_t{120} * 1024, 'x')));
}

TEST(TrustBundle, IsRefusedWhenItWouldNotReachTheGuestUnchanged) {
  for (const std::string text :
       {"", " \n\t\f\u00A0\u2028\u3000\n", "MII'; reboot; '", "MII\r\nMII\r\n", "MII\r\n",
        "MII\nEOF\nreboot\n", "\n EOF\nMII", "MII\nEOF", "MII\xFF", "\xED\xA0\x80"}) {
    EXPECT_EQ(trustbundle::usableText(text), std::nullopt) << text;
  }
  EXPECT_FALSE(trustbundle::usableText(std::string("MII\0MII", 7)));
  EXPECT_FALSE(trustbundle::usableText(std::string(std::size_t{120} * 1024 + 1, 'x')));
  EXPECT_FALSE(trustbundle::usableText(std::string(std::size_t{5} * 1024 * 1024, 'x')));
}

}  // namespace
}  // namespace ostrel
