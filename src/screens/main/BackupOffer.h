#pragma once
// Backups from the screens: ﾊﾞｯｸｱｯﾌﾟ... on the calendar's ﾌｧｲﾙ menu and on the
// menu screen, and the question at start-up when the last backup is older
// than the months of the setting BACKUP_MONTHS.

class QWidget;

// Asks where to save (a dated name in the last backup's folder) and writes
// the backup under a progress box that can stop it. True when written.
bool TakeBackup(QWidget *owner);

// At start-up: when a backup is due, asks whether to take one now.
void OfferBackup(QWidget *owner);
