#pragma once
// The set-up shared by the binary element tests: the pinned environment, an empty blink
// list before and after each test, and a form for the elements.
#include <gtest/gtest.h>

#include <QWidget>

#include "common/test_env.h"
#include "kx/blink/flashtimer.h"

namespace kx::test {

class BinaryFixture : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetEnvironment();
        ClearFlashList();
    }
    void TearDown() override { ClearFlashList(); }
    QWidget form_;
};

}  // namespace kx::test
