// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

// Runs the tests with the toolkit's application object, for processes and the browser.

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <sodium.h>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (sodium_init() < 0) return 1;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
