#pragma once
// The system's printer (through the desktop's print system, CUPS): a page
// target over QPrinter. Each page is a job of its own, named after the
// application's title when it begins, which the print queue shows.
#include "rules/print/PageTarget.h"

#include <QPrinter>
#include <QStringList>

class PrinterTarget : public PageTarget {
public:
    PrinterTarget();
    ~PrinterTarget() override;

    // Ends the job: the page goes to the printer.
    void EndDoc() override;
    int Orientation() const override;
    void setOrientation(int orientation) override;
    void setPaperBin(int bin) override;
    const QPaintDevice *hDC() const override;
    QPointF printableOrigin() const override;
    int Copies() const;
    void setCopies(int copies);

    // The printer in use.
    QString DeviceName() const;
    // Chooses an installed printer by its exact name.
    void setDeviceName(const QString &name);
    // The names of the installed printers, the default one first.
    static QStringList installedPrinters();
    // A printer is installed.
    static bool exists();

    QPrinter &printer() { return mDevice; }
    bool jobActive() const { return mPage.isActive(); }

private:
    bool beginPage() override;
    QPrinter mDevice;
};

// The process's printer.
PrinterTarget &Printer();

// Chooses the printer stored for the report: the installed printer whose
// name equals PRINTER_NM of S_REP ignoring case; with no stored or installed
// match the printer stays as it is, without a word.
void SetPrinter(int repId);
