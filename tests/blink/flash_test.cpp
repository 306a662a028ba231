#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMetaProperty>
#include <QThread>
#include <QTimer>
#include <QVariant>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kx/blink/flash.h"

namespace kx::test {
namespace {

class TKxFlashTest : public ::testing::Test {
  protected:
    void SetUp() override {
        SetTickSourceFactory([] { return std::make_unique<TManualTickSource>(); });
    }
    void TearDown() override { SetTickSourceFactory({}); }

    static TManualTickSource& Source(TKxFlash& flash) {
        return *static_cast<TManualTickSource*>(flash.TickSource());
    }
};

TEST_F(TKxFlashTest, TicksOnlyOnceAHandlerIsAssigned) {
    TKxFlash flash;
    EXPECT_FALSE(Source(flash).Active());

    std::vector<QObject*> senders;
    flash.SetOnTimer([&](QObject* sender) { senders.push_back(sender); });
    EXPECT_TRUE(Source(flash).Active());
    EXPECT_EQ(Source(flash).Interval(), 16u);
    Source(flash).Fire();
    Source(flash).Fire();
    EXPECT_EQ(senders, (std::vector<QObject*>{&flash, &flash}));
}

TEST_F(TKxFlashTest, StoppingAndRestoringTheTicks) {
    using Handler = TKxFlash::TNotifyEvent;
    const struct {
        const char* Name;
        void (*Stop)(TKxFlash&);
        void (*Restore)(TKxFlash&, const Handler&);
        uint32_t RestoredInterval;
    } cases[] = {
        {"Enabled", [](TKxFlash& f) { f.SetEnabled(false); },
         [](TKxFlash& f, const Handler&) { f.SetEnabled(true); }, 40},
        {"Enabled by property", [](TKxFlash& f) { f.setProperty("Enabled", false); },
         [](TKxFlash& f, const Handler&) { f.setProperty("Enabled", true); }, 40},
        {"Interval zero", [](TKxFlash& f) { f.SetInterval(0); },
         [](TKxFlash& f, const Handler&) { f.SetInterval(25); }, 25},
        {"handler cleared", [](TKxFlash& f) { f.SetOnTimer(nullptr); },
         [](TKxFlash& f, const Handler& h) { f.SetOnTimer(h); }, 40},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        TKxFlash flash;
        int calls = 0;
        const Handler count = [&calls](QObject*) { ++calls; };
        flash.SetOnTimer(count);
        flash.SetInterval(40);
        c.Stop(flash);
        EXPECT_FALSE(Source(flash).Active());
        Source(flash).Fire();
        EXPECT_EQ(calls, 0);
        c.Restore(flash, count);
        EXPECT_TRUE(Source(flash).Active());
        EXPECT_EQ(Source(flash).Interval(), c.RestoredInterval);
        Source(flash).Fire();
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(TKxFlashTest, OnlyRealChangesRestartTheTicks) {
    TKxFlash flash;
    int first = 0, second = 0;
    flash.SetOnTimer([&](QObject*) { ++first; });
    const int starts = Source(flash).StartCount();

    // Same values, and one assigned handler replacing another: the phase is kept.
    flash.SetEnabled(true);
    flash.SetInterval(16);
    flash.SetThreadPriority(TKxFlash::tpNormal);
    flash.SetOnTimer([&](QObject*) { ++second; });
    EXPECT_EQ(Source(flash).StartCount(), starts);
    Source(flash).Fire();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);

    // A new priority is only stored, but restarts the ticks like any setting.
    flash.SetThreadPriority(TKxFlash::tpTimeCritical);
    EXPECT_EQ(flash.ThreadPriority(), TKxFlash::tpTimeCritical);
    EXPECT_EQ(Source(flash).StartCount(), starts + 1);
    flash.SetInterval(100);
    EXPECT_EQ(Source(flash).StartCount(), starts + 2);
    EXPECT_EQ(Source(flash).Interval(), 100u);
}

TEST_F(TKxFlashTest, DestructionStopsTheSourceBeforeReleasingIt) {
    std::vector<std::string> events;
    struct TTracingSource : TManualTickSource {
        explicit TTracingSource(std::vector<std::string>& e) : events(e) {}
        ~TTracingSource() override { events.push_back("destroyed"); }
        void Stop() override {
            events.push_back(Active() ? "stop active" : "stop");
            TManualTickSource::Stop();
        }
        std::vector<std::string>& events;
    };
    SetTickSourceFactory([&] { return std::make_unique<TTracingSource>(events); });
    {
        TKxFlash flash;
        flash.SetOnTimer([](QObject*) {});
        events.clear();
    }
    EXPECT_EQ(events, (std::vector<std::string>{"stop active", "destroyed"}));
}

TEST_F(TKxFlashTest, HandlerMayDestroyItsOwnComponent) {
    auto* flash = new TKxFlash;
    TManualTickSource& source = Source(*flash);
    int calls = 0;
    flash->SetOnTimer([&](QObject* sender) {
        ++calls;
        delete sender;
    });
    source.Fire();
    EXPECT_EQ(calls, 1);
}

TEST_F(TKxFlashTest, PublishedProperties) {
    TKxFlash flash;
    const QMetaObject* meta = flash.metaObject();
    for (const char* name : {"Enabled", "Interval", "ThreadPriority"})
        EXPECT_GE(meta->indexOfProperty(name), 0) << name;
    EXPECT_FALSE(meta->property(meta->indexOfProperty("Interval")).isDesignable());
    EXPECT_TRUE(flash.setProperty("ThreadPriority", QStringLiteral("tpIdle")));
    EXPECT_EQ(flash.ThreadPriority(), TKxFlash::tpIdle);
}

// The default source is a real timer on the GUI thread.
TEST(TKxFlashDefaultSource, TicksOnTheGuiThreadThroughTheEventLoop) {
    SetTickSourceFactory({});
    TKxFlash flash;
    flash.SetInterval(5);
    int ticks = 0;
    bool onGuiThread = true;
    QEventLoop loop;
    flash.SetOnTimer([&](QObject*) {
        onGuiThread = onGuiThread && QThread::currentThread() == qApp->thread();
        if (++ticks == 3) loop.quit();
    });
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);  // guard only
    loop.exec();
    EXPECT_EQ(ticks, 3);
    EXPECT_TRUE(onGuiThread);

    flash.SetEnabled(false);
    EXPECT_FALSE(flash.TickSource()->Active());
    QCoreApplication::processEvents();
    EXPECT_EQ(ticks, 3);
}

}  // namespace
}  // namespace kx::test
