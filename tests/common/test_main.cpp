#include <gtest/gtest.h>

#include <QApplication>

#include "common/test_env.h"

namespace {
class PinnedEnvironment : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override { kx::test::ResetEnvironment(); }
};
}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new PinnedEnvironment);
    kx::test::ResetEnvironment();
    return RUN_ALL_TESTS();
}
