#include <QtTest/QTest>
class TestOldCal : public QObject { Q_OBJECT };
QTEST_APPLESS_MAIN(TestOldCal)
#include "tst_oldcal.moc"
