// Every symbol of the icon table draws, in the colour asked for.
#include "ui/SymbolIcon.h"
#include "platform/IconTable.h"

#include <QApplication>
#include <QImage>
#include <QTest>

class SymbolIconTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everySymbolDrawsInItsColour_data()
    {
        QTest::addColumn<QString>("symbol");
        for (const IconTable::Entry &entry : IconTable::entries())
            QTest::newRow(entry.symbol) << QString::fromLatin1(entry.symbol);
    }

    void everySymbolDrawsInItsColour()
    {
        QFETCH(QString, symbol);
        QCOMPARE(IconTable::find(symbol)->symbol, symbol);
        const QColor orange(230, 120, 0);
        const QImage image = SymbolIcon::icon(symbol, orange).pixmap(32, 32).toImage();
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() < 255)
                    continue; // edges: premultiplied, so their colour is rounded
                ++drawn;
                QCOMPARE(pixel.rgb(), orange.rgb());
            }
        }
        QVERIFY2(drawn > 20, "the symbol drew (almost) nothing");
    }

    void symbolsAreNamedOnce()
    {
        QSet<QString> seen;
        for (const IconTable::Entry &entry : IconTable::entries()) {
            QVERIFY2(!seen.contains(entry.symbol), entry.symbol);
            seen.insert(entry.symbol);
        }
        QVERIFY(!IconTable::find(u"no.such.symbol"));
        QTest::ignoreMessage(QtWarningMsg,
                             "SymbolIcon: \"no.such.symbol\" is not in the icon table");
        QVERIFY(SymbolIcon::icon(u"no.such.symbol").isNull());
        QVERIFY(SymbolIcon::icon(u"no.such.symbol").isNull()); // warned once
    }
};

QTEST_MAIN(SymbolIconTest)
#include "SymbolIconTest.moc"
