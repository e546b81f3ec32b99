// The shop and product masters as a user works them: what they show, what a
// save writes and reads back, what they refuse, and that a failed save
// leaves the stored rows as they were.

#include "ui/Form.h"
#include "base/Globals.h"
#include "base/Helpers.h"
#include "ui/Screens.h"
#include "screens/masters/fdlMstPrdEdit.h"
#include "screens/masters/fdlMstShopEdit.h"
#include "rules/masters/ShopMaster.h"
#include "rules/print/PriceTagSheet.h"
#include "store/Database.h"
#include "support/GuiDriver.h"
#include "support/MsgRecorder.h"
#include "support/TestRoot.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest/QTest>

namespace {

// A fresh tree with the menu open (so that closing a dialog only closes it)
// and the messages recorded.
struct Rig {
    TestRoot root;
    MsgRecorder rec;
    Gui::WithMenu withMenu;
    Form *menu = withMenu.menu;
};

QLineEdit *field(Form &f, int i) { return f.ctl<QLineEdit>(QStringLiteral("txtDATA(%1)").arg(i)); }
QRadioButton *option(Form &f, int group, int i)
{
    return f.ctl<QRadioButton>(QStringLiteral("Option%1(%2)").arg(group).arg(i));
}
QPushButton *button(Form &f, const char *name) { return f.ctl<QPushButton>(QString::fromLatin1(name)); }

void typeAndLeave(Form &f, int i, const QString &text)
{
    Gui::type(field(f, i), text);
    Gui::leave(field(f, i));
}

Value shop(const char *column) { return gMST->DLookup(QString::fromLatin1(column), "M_SHOP", "SHOP_ID=1"); }
Value product(const char *column, int id)
{
    return gMST->DLookup(QString::fromLatin1(column), "M_PRD", QStringLiteral("PRD_ID=%1").arg(id));
}

QStringList listTexts(QListWidget *list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

void clickRow(QListWidget *list, int row)
{
    Gui::closePopups();
    const QRect r = list->visualItemRect(list->item(row));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, r.center());
    Gui::settle();
}

} // namespace

class TestShopPrd : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        gFMR_ID = Value(1);
        gSHOP_ID = Value(1);
        setCompNameForTests(QStringLiteral("TESTPC"));
    }

    // ------------------------------------------------------------ shop

    void shopDialogShowsShopOneAndSavesWhatWasTyped()
    {
        Rig rig;
        fdlMstShopEdit f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("販売店編集"));
        QCOMPARE(f.Mode(), qint16(2));
        QCOMPARE(field(f, 0)->text(), QStringLiteral("1"));
        QVERIFY(field(f, 0)->isReadOnly());
        QCOMPARE(QApplication::focusWidget(), field(f, 1));
        QCOMPARE(button(f, "Command1(0)")->text(), QStringLiteral("ｷｬﾝｾﾙ"));
        QCOMPARE(field(f, 1)->text(), shop("SHOP_NM").toText());
        QCOMPARE(field(f, 6)->text(), QStringLiteral("15"));
        QCOMPARE(field(f, 14)->text(), QStringLiteral("4"));
        QCOMPARE(field(f, 21)->text(), QStringLiteral("http://trace.example.jp/"));
        QVERIFY(option(f, 1, 0)->isChecked()); // HTML
        QVERIFY(option(f, 2, 1)->isChecked()); // receivables
        QCOMPARE(field(f, 20)->echoMode(), QLineEdit::Password);

        typeAndLeave(f, 1, QStringLiteral("O'Hara 直売所; DROP TABLE M_SHOP"));
        typeAndLeave(f, 2, QString());
        typeAndLeave(f, 6, QStringLiteral("12.5"));
        typeAndLeave(f, 7, QStringLiteral("３"));       // full-width digits are numbers
        typeAndLeave(f, 8, QStringLiteral("045"));      // two digits at most
        typeAndLeave(f, 19, QStringLiteral("farmer"));
        typeAndLeave(f, 20, QStringLiteral("pa'ss"));
        typeAndLeave(f, 23, QString(70, QChar(0x3042)));
        Gui::click(option(f, 1, 2));
        Gui::click(option(f, 2, 0));
        QVERIFY(rig.rec.messages.isEmpty());
        Gui::click(button(f, "Command1(1)"));
        QVERIFY(!f.isVisible());
        QVERIFY(rig.rec.messages.isEmpty());

        QCOMPARE(shop("SHOP_NM").toText(), QStringLiteral("O'Hara 直売所; DROP TABLE M_SHOP"));
        QVERIFY(shop("OWNER_NM").isNull());
        QCOMPARE(shop("FEE_RT").toDouble(), 12.5);
        QCOMPARE(shop("BCD_FMR_ID_STA").toLong(), 3);
        QCOMPARE(shop("BCD_FMR_ID_LEN").toLong(), 4);
        QCOMPARE(shop("FTP_PWD").toText(), QStringLiteral("pa'ss")); // kept in clear
        QCOMPARE(shop("NOTES").toText(), QString(50, QChar(0x3042)));
        QCOMPARE(shop("UPLOAD_FILE_TYPE").toLong(), 3);
        QCOMPARE(shop("ACC_ID").toLong(), 1000);
        QCOMPARE(gMST->DCount("*", "M_SHOP").toLong(), 1);

        // read back by a new dialog
        fdlMstShopEdit again;
        Gui::show(&again);
        QCOMPARE(field(again, 1)->text(), QStringLiteral("O'Hara 直売所; DROP TABLE M_SHOP"));
        QCOMPARE(field(again, 6)->text(), QStringLiteral("12.5"));
        QCOMPARE(field(again, 20)->text(), QStringLiteral("pa'ss"));
        QVERIFY(option(again, 1, 2)->isChecked());
        QVERIFY(option(again, 2, 0)->isChecked());
        Gui::click(button(again, "Command1(0)"));
        QVERIFY(!again.isVisible());
    }

    void shopNumberFieldsRefuseText()
    {
        Rig rig;
        fdlMstShopEdit f;
        Gui::show(&f);
        for (int i : {6, 7, 12, 16}) {
            rig.rec.clear();
            typeAndLeave(f, i, QStringLiteral("x"));
            QCOMPARE(rig.rec.lastPrompt(), QStringLiteral("数値を指定してください。"));
            QCOMPARE(rig.rec.messages.last().buttons, 48);
            QCOMPARE(QApplication::focusWidget(), field(f, i));
            // the save waits for the field
            Gui::click(button(f, "Command1(1)"));
            QVERIFY(f.isVisible());
            typeAndLeave(f, i, QStringLiteral("1"));
        }
        // text fields take anything
        rig.rec.clear();
        typeAndLeave(f, 4, QStringLiteral("0000-11-4455"));
        QVERIFY(rig.rec.messages.isEmpty());
    }

    void priceInTensLengthGoesByProductLength()
    {
        Rig rig;
        fdlMstShopEdit f;
        Gui::show(&f);
        // product length empty: the length of the price in tens is not kept
        typeAndLeave(f, 10, QString());
        typeAndLeave(f, 14, QStringLiteral("3"));
        Gui::click(button(f, "Command1(1)"));
        QVERIFY(rig.rec.messages.isEmpty());
        QVERIFY(shop("BCD_PRD_ID_LEN").isNull());
        QVERIFY(shop("BCD_AMT_10_LEN").isNull());
        QCOMPARE(shop("BCD_AMT_10_STA").toLong(), 9);

        // with the product length there it is the typed one, and empty is Null
        fdlMstShopEdit g;
        Gui::show(&g);
        typeAndLeave(g, 10, QStringLiteral("2"));
        typeAndLeave(g, 14, QStringLiteral("3"));
        Gui::click(button(g, "Command1(1)"));
        QCOMPARE(shop("BCD_AMT_10_LEN").toLong(), 3);
        fdlMstShopEdit h;
        Gui::show(&h);
        typeAndLeave(h, 14, QString());
        Gui::click(button(h, "Command1(1)"));
        QVERIFY(rig.rec.messages.isEmpty());
        QVERIFY(!h.isVisible());
        QVERIFY(shop("BCD_AMT_10_LEN").isNull());
        QCOMPARE(shop("BCD_PRD_ID_LEN").toLong(), 2);
    }

    void missingShopIsMadeAndOddCodesAreKept()
    {
        Rig rig;
        gMST->EXEC("DELETE M_SHOP.* FROM M_SHOP");
        {
            fdlMstShopEdit f;
            Gui::show(&f);
            QCOMPARE(f.Mode(), qint16(2));
            for (int i = 1; i < ShopMaster::FieldCount; ++i)
                QVERIFY(field(f, i)->text().isEmpty());
            for (int i = 0; i < 3; ++i)
                QVERIFY(!option(f, 1, i)->isChecked());
            typeAndLeave(f, 1, QStringLiteral("新しい直売所"));
            Gui::click(button(f, "Command1(1)"));
            QVERIFY(!f.isVisible());
        }
        QCOMPARE(shop("SHOP_NM").toText(), QStringLiteral("新しい直売所"));
        QVERIFY(shop("UPLOAD_FILE_TYPE").isNull());
        QVERIFY(shop("ACC_ID").isNull());
        QVERIFY(shop("CHK_FLG").toBool()); // offered in the lists

        // codes the dialog has no option for show none and stay as stored
        gMST->EXEC("UPDATE M_SHOP SET UPLOAD_FILE_TYPE=7, ACC_ID=2000 WHERE SHOP_ID=1");
        fdlMstShopEdit f;
        Gui::show(&f);
        for (int i = 0; i < 3; ++i)
            QVERIFY(!option(f, 1, i)->isChecked());
        QVERIFY(!option(f, 2, 0)->isChecked() && !option(f, 2, 1)->isChecked());
        Gui::click(button(f, "Command1(1)"));
        QCOMPARE(shop("UPLOAD_FILE_TYPE").toLong(), 7);
        QCOMPARE(shop("ACC_ID").toLong(), 2000);
    }

    void storedTextsLongerThanTheFieldsSurviveASave()
    {
        Rig rig;
        const QString url = QStringLiteral("https://trace.example.jp/") + QString(150, QLatin1Char('a'));
        const QString notes = QString(120, QChar(0x3044));
        gMST->EXEC(QStringLiteral("UPDATE M_SHOP SET WWW_URL='%1', NOTES='%2' WHERE SHOP_ID=1").arg(url, notes));
        fdlMstShopEdit f;
        Gui::show(&f);
        QCOMPARE(field(f, 21)->text(), url);
        typeAndLeave(f, 1, QStringLiteral("ひだまり"));
        Gui::click(button(f, "Command1(1)"));
        QCOMPARE(shop("WWW_URL").toText(), url);
        QCOMPARE(shop("NOTES").toText(), notes);
        // typing still stops at the limit
        fdlMstShopEdit g;
        Gui::show(&g);
        Gui::type(field(g, 1), QString(60, QLatin1Char('z')));
        QCOMPARE(field(g, 1)->text().size(), 50);
    }

    // The logo is a picture copied into the images folder beside the program,
    // by the chooser or by a drop; the shop stores its name, and the tag
    // sheet finds it there. What is no picture is refused; another picture of
    // the same name is replaced only when the user says so.
    void logoIsCopiedIntoTheImagesFolder()
    {
        Rig rig;
        QTemporaryDir elsewhere;
        const QString images = QDir::cleanPath(rig.root.root() + QStringLiteral("/images"));
        auto picture = [&](const QString &path, QColor colour, QSize size) {
            QImage img(size, QImage::Format_RGB32);
            img.fill(colour);
            QVERIFY(img.save(path, "PNG"));
        };
        const QString name = QStringLiteral("直売所ひだまり_ロゴ_2024年度版_カラー.png");
        const QString outside = elsewhere.filePath(name);
        picture(outside, Qt::red, QSize(200, 20));
        QString chosen;
        QStringList asked;
        setOpenFileHook([&](const QString &, const QString &folder) {
            asked << QDir::cleanPath(folder);
            return chosen;
        });
        fdlMstShopEdit f;
        Gui::show(&f);
        auto choose = [&](const QString &path) {
            chosen = path;
            Gui::click(button(f, "Command1(2)"));
        };
        choose(QString()); // cancelled: nothing
        QVERIFY(field(f, 22)->text().isEmpty());
        choose(outside);
        QCOMPARE(asked.first(), images);
        QCOMPARE(field(f, 22)->text(), name);
        QVERIFY(QFile::exists(images + QLatin1Char('/') + name));
        Gui::click(button(f, "Command1(1)"));
        QCOMPARE(shop("PTAG_LOGO").toText(), name);
        PriceTagSheet::loadShopLogo();
        QCOMPARE(PriceTagSheet::logo().size(), QSize(200, 20));

        fdlMstShopEdit g;
        Gui::show(&g);
        auto chooseIn = [&](Form &d, const QString &path) {
            chosen = path;
            Gui::click(button(d, "Command1(2)"));
        };
        // no picture: said, nothing copied, the field as it was
        const QString text = elsewhere.filePath(QStringLiteral("note.png"));
        QFile t(text);
        QVERIFY(t.open(QIODevice::WriteOnly) && t.write("not a picture") > 0);
        t.close();
        rig.rec.clear();
        chooseIn(g, text);
        QVERIFY(rig.rec.lastPrompt().startsWith(QStringLiteral("画像ファイルではありません。")));
        QCOMPARE(field(g, 22)->text(), name);
        QVERIFY(!QFile::exists(images + QStringLiteral("/note.png")));
        // another picture of the same name: kept on いいえ, replaced on はい
        picture(outside, Qt::blue, QSize(40, 30));
        rig.rec.answer(Msg::ResNo);
        chooseIn(g, outside);
        QVERIFY(rig.rec.lastPrompt().startsWith(QStringLiteral("画像フォルダに同じ名前の別の画像があります。")));
        QCOMPARE(QImage(images + QLatin1Char('/') + name).size(), QSize(200, 20));
        rig.rec.answer(Msg::ResYes);
        chooseIn(g, outside);
        QCOMPARE(QImage(images + QLatin1Char('/') + name).size(), QSize(40, 30));
        // a picture that lies there already is taken as it is, without a question
        rig.rec.clear();
        chooseIn(g, images + QLatin1Char('/') + name);
        QVERIFY(rig.rec.messages.isEmpty());
        setOpenFileHook(nullptr);

        // a drop does the same with the first file dropped
        const QString dropped = elsewhere.filePath(QStringLiteral("drop.png"));
        picture(dropped, Qt::green, QSize(10, 10));
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(dropped), QUrl::fromLocalFile(text)});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(field(g, 22), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(field(g, 22), &drop);
        QCOMPARE(field(g, 22)->text(), QStringLiteral("drop.png"));
        QVERIFY(QFile::exists(images + QStringLiteral("/drop.png")));
    }

    // A layout that leaves the twelve digits is refused naming its field,
    // with the focus on its start; fields sharing digits are saved only
    // after a question.
    void barcodeLayoutIsCheckedBeforeTheSave()
    {
        Rig rig;
        struct Case {
            QVector<QPair<int, const char *>> typed; // field, text
            const char *said;                         // the start of the message, "" for none
            int answer;                               // to a question
            bool saved;
            int focus; // the field focused after a refusal, -1 none
        };
        const Case cases[] = {
            {{{9, "3"}, {10, "11"}}, "販売店のバーコード設定が正しくありません。「商品ID」の先頭 3、長さ 11", 0, false, 9},
            {{{15, ""}, {16, "2"}}, "販売店のバーコード設定が正しくありません。「その他」の先頭 0、長さ 2", 0, false, 15},
            {{{7, "1"}, {8, "5"}, {9, "5"}, {10, "3"}}, "バーコードの次の項目が同じ桁を使っています。", Msg::ResNo, false, -1},
            {{{7, "1"}, {8, "5"}, {9, "5"}, {10, "3"}}, "バーコードの次の項目が同じ桁を使っています。", Msg::ResYes, true, -1},
            {{{7, "1"}, {8, "5"}, {9, "6"}, {10, "3"}}, "", 0, true, -1},
        };
        for (const Case &c : cases) {
            gMST->EXEC("UPDATE M_SHOP SET SHOP_NM='前の名前', BCD_OPT_STA=NULL, BCD_OPT_LEN=NULL, BCD_AMT_01_LEN=0, "
                       "BCD_AMT_10_LEN=0, BCD_FMR_ID_LEN=0, BCD_PRD_ID_LEN=0 WHERE SHOP_ID=1");
            fdlMstShopEdit f;
            Gui::show(&f);
            typeAndLeave(f, 1, QStringLiteral("新しい名前"));
            for (const auto &[i, text] : c.typed)
                typeAndLeave(f, i, QString::fromUtf8(text));
            rig.rec.clear();
            if (c.answer)
                rig.rec.answer(c.answer);
            Gui::click(button(f, "Command1(1)"));
            const QString said = QString::fromUtf8(c.said);
            QCOMPARE(rig.rec.lastPrompt().left(said.size()), said);
            QCOMPARE(shop("SHOP_NM").toText(), c.saved ? QStringLiteral("新しい名前") : QStringLiteral("前の名前"));
            QCOMPARE(f.isVisible(), !c.saved);
            if (c.focus >= 0)
                QCOMPARE(QApplication::focusWidget(), field(f, c.focus));
        }
    }

    void failedShopSaveSaysSoAndKeepsTheRow()
    {
        Rig rig;
        const Value name = shop("SHOP_NM");
        fdlMstShopEdit f;
        Gui::show(&f);
        typeAndLeave(f, 1, QStringLiteral("変更"));
        gMST->EXEC("ALTER TABLE M_SHOP RENAME COLUMN FTP_DIR TO FTP_DIR_X");
        Gui::click(button(f, "Command1(1)"));
        QCOMPARE(rig.rec.count(), 2);
        QCOMPARE(rig.rec.messages[0].buttons, 16);
        QVERIFY(rig.rec.messages[0].prompt.startsWith(QLatin1Char('(')));
        QCOMPARE(rig.rec.messages[1].prompt, QStringLiteral("データの登録に失敗しました。"));
        QCOMPARE(rig.rec.messages[1].buttons, 48);
        QVERIFY(f.isVisible());
        QCOMPARE(shop("SHOP_NM"), name);
    }

    void menuOpensBothMastersByName()
    {
        Rig rig;
        Gui::Modals modals;
        auto *menu = rig.menu;
        Gui::show(menu);
        Gui::click(menu->ctl<QPushButton>("cmdMENU(11)"));
        Gui::click(menu->ctl<QPushButton>("cmdMENU(4)"));
        QCOMPARE(modals.opened, (QStringList{"fdlMstShopEdit", "fdlMstPrdEdit"}));
        QVERIFY(rig.rec.messages.isEmpty());
        menu->hide();
    }

    // ------------------------------------------------------------ products

    void productDialogShowsListAndPickedRow()
    {
        Rig rig;
        fdlMstPrdEdit f;
        Gui::show(&f);
        QCOMPARE(f.windowTitle(), QStringLiteral("商品マスタ編集"));
        auto *list = f.ctl<QListWidget>("List1");
        auto *shops = f.ctl<QComboBox>("cmbDATA(0)");
        const int count = gMST->DCount("*", "M_PRD").toLong();
        QCOMPARE(list->count(), count);
        QCOMPARE(f.rows().size(), count);
        QCOMPARE(list->item(0)->text(), QStringLiteral("トマト"));
        QCOMPARE(field(f, 0)->text(), QStringLiteral("1"));
        QCOMPARE(field(f, 1)->text(), QStringLiteral("トマト"));
        QCOMPARE(shops->currentText(), shop("SHOP_NM").toText());
        QVERIFY(f.ctl<QCheckBox>("Check1")->isChecked());

        clickRow(list, 2);
        QCOMPARE(field(f, 0)->text(), QStringLiteral("3"));
        QCOMPARE(field(f, 1)->text(), QStringLiteral("きゅうり"));
        QCOMPARE(field(f, 3)->text(), QStringLiteral("キュウリ"));

        // the filter narrows the list by name; the shown row stays
        Gui::type(f.ctl<QLineEdit>("txtCOND(0)"), QStringLiteral("トマト"));
        QCOMPARE(listTexts(list), (QStringList{"トマト", "ミニトマト"}));
        QCOMPARE(field(f, 1)->text(), QStringLiteral("きゅうり"));
        clickRow(list, 1);
        QCOMPARE(field(f, 1)->text(), QStringLiteral("ミニトマト"));
        Gui::type(f.ctl<QLineEdit>("txtCOND(0)"), QString());
        QCOMPARE(list->count(), count);
        QCOMPARE(list->currentRow(), 1);
    }

    void productsAreChangedAddedRemovedAndSavedAtOnce()
    {
        Rig rig;
        const int count = gMST->DCount("*", "M_PRD").toLong();
        const int top = gMST->DMax("PRD_ID", "M_PRD").toLong();
        const Value termOf3 = product("I_TERM", 3), idateOf3 = product("IDATE", 3), mcdOf3 = product("M_CD", 3);
        fdlMstPrdEdit f;
        Gui::show(&f);
        auto *list = f.ctl<QListWidget>("List1");
        auto *check = f.ctl<QCheckBox>("Check1");

        // a changed name shows in the list at once
        clickRow(list, 2);
        typeAndLeave(f, 1, QStringLiteral("胡瓜 'いぼ'"));
        typeAndLeave(f, 2, QString());
        QCOMPARE(list->item(2)->text(), QStringLiteral("胡瓜 'いぼ'"));

        // a new row after the greatest number, on the current shop, offered
        Gui::click(f.ctl<QPushButton>("cmdSUB(1)"));
        QCOMPARE(f.rows().size(), count + 1);
        QCOMPARE(field(f, 0)->text(), QString::number(top + 1));
        QCOMPARE(QApplication::focusWidget(), field(f, 0));
        QVERIFY(check->isChecked());
        QCOMPARE(f.ctl<QComboBox>("cmbDATA(0)")->currentText(), shop("SHOP_NM").toText());
        typeAndLeave(f, 0, QString::number(top + 1));
        typeAndLeave(f, 1, QStringLiteral("新じゃが"));
        typeAndLeave(f, 3, QStringLiteral("シンジャガ"));
        QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
        Gui::settle();
        QVERIFY(!check->isChecked());

        // the second row goes; the filter hides others, which are saved all the same
        clickRow(list, 1);
        QCOMPARE(field(f, 1)->text(), QStringLiteral("ミニトマト"));
        Gui::click(f.ctl<QPushButton>("cmdSUB(0)"));
        QCOMPARE(f.rows().size(), count);
        QCOMPARE(field(f, 0)->text(), QStringLiteral("3")); // the next row takes its place
        Gui::type(f.ctl<QLineEdit>("txtCOND(0)"), QStringLiteral("新"));
        QCOMPARE(list->count(), 1);

        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(rig.rec.messages.isEmpty());
        QVERIFY(!f.isVisible());
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), count);
        QVERIFY(product("PRD_NM", 2).isNull());
        QCOMPARE(product("PRD_NM", 3).toText(), QStringLiteral("胡瓜 'いぼ'"));
        QVERIFY(product("PRD_OMT", 3).isNull());
        // what the dialog doesn't show passes through
        QCOMPARE(product("I_TERM", 3), termOf3);
        QCOMPARE(product("M_CD", 3), mcdOf3);
        QCOMPARE(product("IDATE", 3), idateOf3);
        QCOMPARE(product("LAST_TM", 3).toText(), QStringLiteral("TESTPC"));
        QVERIFY(product("HOLD_TM", 3).isNull());
        QCOMPARE(product("PRD_NM", top + 1).toText(), QStringLiteral("新じゃが"));
        QCOMPARE(product("PRD_YM", top + 1).toText(), QStringLiteral("シンジャガ"));
        QCOMPARE(product("SHOP_ID", top + 1).toLong(), 1);
        QVERIFY(!product("CHK_FLG", top + 1).toBool());
        QVERIFY(product("IDATE", top + 1).isDateType());
        QCOMPARE(product("IDATE", top + 1), product("UDATE", top + 1));
    }

    void productNumberIsCheckedBeforeTheRowMoves()
    {
        Rig rig;
        fdlMstPrdEdit f;
        Gui::show(&f);
        auto *list = f.ctl<QListWidget>("List1");
        auto *id = field(f, 0);
        clickRow(list, 3);
        QCOMPARE(id->text(), QStringLiteral("4"));

        const struct {
            const char *typed;
            const char *message;
        } refused[] = {{"abc", "数値を入力してください。"},
                       {"2", "商品IDが重複しています。"},
                       {"1.5", "商品IDは0以上の整数で入力してください。"},
                       {"-4", "商品IDは0以上の整数で入力してください。"}};
        for (const auto &r : refused) {
            rig.rec.clear();
            Gui::type(id, QString::fromUtf8(r.typed));
            // leaving for the list: the message, the field keeps the focus,
            // and the row on show stays the same
            clickRow(list, 0);
            QCOMPARE(rig.rec.lastPrompt(), QString::fromUtf8(r.message));
            QCOMPARE(QApplication::focusWidget(), id);
            QCOMPARE(f.shownIndex(), 3);
            QCOMPARE(f.rows()[3].PRD_ID.toLong(), 4);
            QCOMPARE(list->currentRow(), 3);
        }
        // a free number in full-width digits is taken, and the list knows it
        rig.rec.clear();
        Gui::type(id, QStringLiteral("４０"));
        clickRow(list, 0);
        QVERIFY(rig.rec.messages.isEmpty());
        QCOMPARE(field(f, 1)->text(), QStringLiteral("トマト"));
        QCOMPARE(f.rows()[3].PRD_ID.toLong(), 40);
        clickRow(list, 3);
        QCOMPARE(field(f, 0)->text(), QStringLiteral("40"));
        QCOMPARE(field(f, 1)->text(), QStringLiteral("なす"));
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(product("PRD_ID", 4).isNull());
        QCOMPARE(product("PRD_NM", 40).toText(), QStringLiteral("なす"));
    }

    void emptyTableStartsWithOneBlankRow()
    {
        Rig rig;
        gMST->EXEC("DELETE M_PRD.* FROM M_PRD");
        fdlMstPrdEdit f;
        Gui::show(&f);
        QCOMPARE(f.rows().size(), 1);
        QVERIFY(field(f, 0)->text().isEmpty());
        // the first add fills the blank row, the second grows the array
        Gui::click(f.ctl<QPushButton>("cmdSUB(1)"));
        QCOMPARE(f.rows().size(), 1);
        QCOMPARE(field(f, 0)->text(), QStringLiteral("1"));
        typeAndLeave(f, 1, QStringLiteral("そらまめ"));
        Gui::click(f.ctl<QPushButton>("cmdSUB(1)"));
        QCOMPARE(f.rows().size(), 2);
        QCOMPARE(field(f, 0)->text(), QStringLiteral("2"));
        // a row numbered 0 isn't saved
        typeAndLeave(f, 0, QStringLiteral("0"));
        typeAndLeave(f, 1, QStringLiteral("番号なし"));
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), 1);
        QCOMPARE(product("PRD_NM", 1).toText(), QStringLiteral("そらまめ"));

        // removing the last row leaves a blank one, which saves as nothing
        fdlMstPrdEdit g;
        Gui::show(&g);
        Gui::click(g.ctl<QPushButton>("cmdSUB(0)"));
        QCOMPARE(g.rows().size(), 1);
        QVERIFY(field(g, 1)->text().isEmpty());
        Gui::click(g.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), 0);
    }

    void failedProductSaveLeavesTableAndArray()
    {
        Rig rig;
        const int count = gMST->DCount("*", "M_PRD").toLong();
        fdlMstPrdEdit f;
        Gui::show(&f);
        typeAndLeave(f, 1, QStringLiteral("完熟トマト"));
        // a column of the table is renamed behind the dialog's back: the save fails
        // after the old rows were taken out
        const Value term = product("I_TERM", 1);
        gMST->EXEC("ALTER TABLE M_PRD RENAME COLUMN I_TERM TO I_TERM_X");
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QCOMPARE(rig.rec.count(), 1);
        QVERIFY(rig.rec.lastPrompt().startsWith(QLatin1Char('(')));
        QVERIFY(f.isVisible());
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), count);
        QCOMPARE(product("PRD_NM", 1).toText(), QStringLiteral("トマト"));

        // with the column back, "登録" again writes the array as it stood
        gMST->EXEC("ALTER TABLE M_PRD RENAME COLUMN I_TERM_X TO I_TERM");
        Gui::click(f.ctl<QPushButton>("cmdMENU(1)"));
        QVERIFY(!f.isVisible());
        QCOMPARE(gMST->DCount("*", "M_PRD").toLong(), count);
        QCOMPARE(product("PRD_NM", 1).toText(), QStringLiteral("完熟トマト"));
        QCOMPARE(product("I_TERM", 1), term);
    }
};

TILLORA_GUI_TEST_MAIN(TestShopPrd)
#include "tst_shopprd.moc"
