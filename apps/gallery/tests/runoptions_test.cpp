#include <gtest/gtest.h>

#include "runoptions.h"

namespace kxgallery {
namespace {

TEST(RunOptions, HeadlessWithoutDisplayOrWithOffscreenPlatform) {
    struct Case {
        DisplayEnvironment env;
        bool headless;
    };
    const Case cases[] = {
        {{"", "", ""}, true},
        {{":0", "", ""}, false},
        {{"", "wayland-0", ""}, false},
        {{":0", "wayland-0", "xcb"}, false},
        {{":0", "", "offscreen"}, true},
        {{"", "", "xcb"}, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(IsHeadless(c.env), c.headless)
            << c.env.display.toStdString() << "|" << c.env.waylandDisplay.toStdString() << "|"
            << c.env.platform.toStdString();
}

TEST(RunOptions, ParsesArgumentsAndFallsBackToScreenshotsWhenHeadless) {
    const DisplayEnvironment window{":0", "", ""};
    const DisplayEnvironment headless{"", "", ""};
    struct Case {
        QStringList args;
        DisplayEnvironment env;
        bool screenshots;
        QString outDir;
        bool error;
        bool help;
        QStringList unknown;
    };
    const Case cases[] = {
        {{}, window, false, "", false, false, {}},
        {{}, headless, true, "out", false, false, {}},
        {{"--screenshot", "pics"}, window, true, "pics", false, false, {}},
        {{"--screenshot=a b"}, window, true, "a b", false, false, {}},
        {{"--screenshot", "pics"}, headless, true, "pics", false, false, {}},
        {{"--screenshot"}, window, false, "", true, false, {}},
        {{"--screenshot", ""}, window, false, "", true, false, {}},
        {{"--screenshot="}, headless, false, "", true, false, {}},
        {{"--help"}, window, false, "", false, true, {}},
        {{"-h", "--bogus"}, window, false, "", false, true, {"--bogus"}},
        {{"-platform", "xcb", "--screenshot", "x"},
         window,
         true,
         "x",
         false,
         false,
         {"-platform", "xcb"}},
    };
    for (const Case& c : cases) {
        const RunOptions o = ParseRunOptions(c.args, c.env);
        const std::string what = c.args.join(' ').toStdString();
        EXPECT_EQ(o.screenshots, c.screenshots) << what;
        EXPECT_EQ(o.outDir, c.outDir) << what;
        EXPECT_EQ(!o.error.isEmpty(), c.error) << what;
        EXPECT_EQ(o.help, c.help) << what;
        EXPECT_EQ(o.unknown, c.unknown) << what;
    }
}

}  // namespace
}  // namespace kxgallery
