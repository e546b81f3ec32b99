#include <QtTest/QTest>
class TestPlanting : public QObject { Q_OBJECT };
QTEST_APPLESS_MAIN(TestPlanting)
#include "tst_planting.moc"
