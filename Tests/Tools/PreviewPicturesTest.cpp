#include <gtest/gtest.h>

#include <array>

#include "Tests/EndToEnd/Process.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"
#include "Tests/OstrelAgent/ReportText.hpp"

namespace ostrel {
namespace {

using Size = std::array<unsigned, 2>;

/// Width and height, which follow the head of a PNG file's first chunk.
Size sizeOf(const std::string& png) {
  Size size{};
  EXPECT_TRUE(png.starts_with("\x89PNG")) << png.substr(0, 8);
  for (std::size_t i = 0; i < 8; ++i) {
    size[i / 4] = size[i / 4] * 256 + static_cast<unsigned char>(png.at(16 + i));
  }
  return size;
}

class PreviewPictures : public testing::Test {
 protected:
  Ran preview(std::vector<std::string> arguments, const std::string& input = reportText()) const {
    arguments.insert(arguments.begin(), PREVIEW);
    return run(arguments, {{"TZ", "UTC"}, {"XDG_RUNTIME_DIR", folder.path()}}, input);
  }

  /// The files of panel and icon.
  std::pair<std::string, std::string> drawn(std::vector<std::string> options) const {
    options.insert(options.end(), {"--png", folder / "panel.png", "--icon", folder / "icon.png"});
    const auto ran = preview(options);
    EXPECT_EQ(ran.status, 0) << ran.error;
    EXPECT_EQ(ran.output + ran.error, "");
    return {folder.read("panel.png"), folder.read("icon.png")};
  }

  TemporaryFolder folder;
};

TEST_F(PreviewPictures, HaveTheSizeOfTheirScaleAndTheColoursOfTheirTheme) {
  const auto [panel, icon] = drawn({});
  const auto size = sizeOf(panel);
  EXPECT_EQ(size[0], 360U);
  for (const unsigned scale : {2U, 3U}) {
    const auto [largePanel, largeIcon] = drawn({"--scale", std::to_string(scale)});
    EXPECT_EQ(sizeOf(largePanel), (Size{scale * size[0], scale * size[1]}));
    EXPECT_EQ(sizeOf(largeIcon), (Size{scale * 18, scale * 18}));
  }
  const auto [darkPanel, darkIcon] = drawn({"--dark"});
  EXPECT_EQ(sizeOf(darkPanel), size);
  EXPECT_NE(darkPanel, panel);
  EXPECT_NE(darkIcon, icon);
  EXPECT_EQ(drawn({}), std::pair(panel, icon));
}

TEST_F(PreviewPictures, ShowOtherWindowsInBothThemes) {
  struct Row {
    const char *option, *name;
    unsigned width;
  };
  for (const auto& [option, name, width] :
       {Row{"--onboarding", "repair", 460}, Row{"--alert", "install", 420}, Row{"--window", "health", 780}}) {
    const auto file = folder / "window.png";
    EXPECT_EQ(preview({option, name, "--png", file}).status, 0);
    const auto light = folder.read("window.png");
    EXPECT_EQ(preview({option, name, "--png", file, "--dark"}).status, 0);
    const auto dark = folder.read("window.png");
    EXPECT_EQ(sizeOf(light)[0], width) << name;
    EXPECT_EQ(sizeOf(light), sizeOf(dark)) << name;
    EXPECT_NE(light, dark) << name;
  }
}

TEST_F(PreviewPictures, ThePicturesOfTheAgentWindowHaveTheWantedSize) {
  const auto file = folder / "window.png";
  EXPECT_EQ(preview({"--window", "help", "--png", file, "--size", "620x360", "--text-scale", "2"}).status, 0);
  EXPECT_EQ(sizeOf(folder.read("window.png")), (Size{620, 360}));
}

TEST_F(PreviewPictures, ShowOneReportAndReportAnUnwritablePath) {
  const auto many = preview({"--png", folder / "panel.png"}, reportText() + "\n" + reportText());
  EXPECT_EQ(many.status, 1);
  EXPECT_EQ(many.error, "ostrel-preview: a picture shows one report, but there are 2\n");
  EXPECT_EQ(folder.read("panel.png"), "");
  const auto unwritten = preview({"--png", folder / "none/panel.png"});
  EXPECT_EQ(unwritten.status, 1);
  EXPECT_EQ(unwritten.error, "ostrel-preview: " + (folder / "none/panel.png") + " cannot be written\n");
}

}  // namespace
}  // namespace ostrel
