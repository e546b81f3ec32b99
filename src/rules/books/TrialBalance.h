#pragma once
// The trial balance dialog's months. The dialog reads no slips yet: its
// months and farmer lead to no figures of their own.

#include <QDate>
#include <QStringList>

// The months the dialog opens with: January of this year, and this month,
// each as "yyyy/mm".
QStringList accRepMonths(const QDate &today);
