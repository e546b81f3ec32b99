#pragma once
// A test binary of the rules: no widgets, a QGuiApplication (offscreen) for
// the drawings and fonts, and the run on both engines.
#include "support/TestRoot.h"

#include <QGuiApplication>
#include <QFont>

#define TILLORA_RULES_TEST_MAIN(TestClass)                                                                   \
    int main(int argc, char **argv)                                                                         \
    {                                                                                                        \
        prepareProcess();                                                                                    \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                             \
        QGuiApplication app(argc, argv);                                                                    \
        QFont font(QStringLiteral("Noto Sans CJK JP"));                                                      \
        font.setPointSize(9);                                                                                \
        QGuiApplication::setFont(font);                                                                      \
        TestClass t;                                                                                         \
        return TestEnv::runOnEngines(&t, argc, argv);                                                       \
    }
