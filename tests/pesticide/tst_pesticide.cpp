#include <QtTest/QTest>
class TestPesticide : public QObject { Q_OBJECT };
QTEST_APPLESS_MAIN(TestPesticide)
#include "tst_pesticide.moc"
