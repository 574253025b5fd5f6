// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Tests that need windows: a display (./test gives a virtual one) and one application object.

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests happens at build time, where there is no display.
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    // Mesa skips the compilation of a shader that it has seen, and with it the warnings that a test waits
    // for.
    qputenv("MESA_SHADER_CACHE_DISABLE", "true");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
