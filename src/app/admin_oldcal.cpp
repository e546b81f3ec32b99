#include <QStringList>
int runOldCal(const QStringList &) { return 2; }
