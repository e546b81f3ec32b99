#include <QtTest/QTest>
class TestShipping : public QObject { Q_OBJECT };
QTEST_APPLESS_MAIN(TestShipping)
#include "tst_shipping.moc"
