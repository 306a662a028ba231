// The command line: accepted forms and the refusals.
#include <gtest/gtest.h>

#include "options.h"

namespace kx::panel {
namespace {

TEST(Options, CommandLines) {
    struct Case {
        QStringList args;
        bool ok;
        QString panel, bindings, render;
        double after;
    };
    const Case cases[] = {
        {{"p.ui"}, true, "p.ui", "", "", 0},
        {{"p.ui", "--bind", "b.json"}, true, "p.ui", "b.json", "", 0},
        {{"p.ui", "--render", "o.png", "--after", "2"}, true, "p.ui", "", "o.png", 2},
        {{"--render=o.pdf", "p.ui", "--after", "0.5", "--bind", "b.json"},
         true,
         "p.ui",
         "b.json",
         "o.pdf",
         0.5},
        {{"p.ui", "--render", "o.png"}, true, "p.ui", "", "o.png", 0},
        {{}, false, "", "", "", 0},
        {{"a.ui", "b.ui"}, false, "", "", "", 0},
        {{"p.ui", "--after", "2"}, false, "", "", "", 0},
        {{"p.ui", "--render", "o.png", "--after", "-1"}, false, "", "", "", 0},
        {{"p.ui", "--render", "o.png", "--after", "nan"}, false, "", "", "", 0},
        {{"p.ui", "--render", "o.png", "--after", "1e9"}, false, "", "", "", 0},
        {{"p.ui", "--render"}, false, "", "", "", 0},
        {{"p.ui", "--frobnicate"}, false, "", "", "", 0},
    };
    for (const Case& c : cases) {
        QString message;
        const auto o = Options::Parse(QStringList{"kxpanel"} + c.args, &message);
        ASSERT_EQ(o.has_value(), c.ok) << c.args.join(' ').toStdString();
        if (!c.ok) {
            EXPECT_TRUE(message.contains("usage:")) << message.toStdString();
            continue;
        }
        EXPECT_EQ(o->Panel, c.panel);
        EXPECT_EQ(o->Bindings, c.bindings);
        EXPECT_EQ(o->RenderTo, c.render);
        EXPECT_EQ(o->AfterSeconds, c.after);
    }
}

TEST(Options, HelpIsNotAnError) {
    QString message;
    bool help = false;
    EXPECT_FALSE(Options::Parse({"kxpanel", "--help"}, &message, &help));
    EXPECT_TRUE(help);
    EXPECT_TRUE(message.startsWith("usage:"));
}

}  // namespace
}  // namespace kx::panel
