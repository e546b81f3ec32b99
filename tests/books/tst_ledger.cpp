#include <QtTest/QTest>
class TestLedger : public QObject { Q_OBJECT };
QTEST_APPLESS_MAIN(TestLedger)
#include "tst_ledger.moc"
