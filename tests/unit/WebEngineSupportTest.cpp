#include "services/WebEngineSupport.h"

#include <QTest>

class WebEngineSupportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reasons()
    {
        struct Row {
            bool helperFound, sandboxDisabled, runningAsRoot, userNamespaces;
            const char *reasonMentions; // empty: it can run
        };
        for (const Row &row : std::initializer_list<Row>{
                 {true, false, false, true, ""},
                 {false, false, false, true, "/opt/qt/QtWebEngineProcess"},
                 {false, true, true, true, "/opt/qt/QtWebEngineProcess"},
                 {true, false, true, true, "QTWEBENGINE_DISABLE_SANDBOX"},
                 {true, true, true, true, ""},
                 {true, false, false, false, "namespaces"},
                 {true, true, false, false, ""},
             }) {
            WebEngineSupport::Conditions conditions;
            conditions.helperFound = row.helperFound;
            conditions.helperLookedFor = QStringLiteral("/opt/qt/QtWebEngineProcess");
            conditions.sandboxDisabled = row.sandboxDisabled;
            conditions.runningAsRoot = row.runningAsRoot;
            conditions.userNamespacesAvailable = row.userNamespaces;
            const std::optional<QString> reason = WebEngineSupport::whyUnavailable(conditions);
            const QString expected = QLatin1String(row.reasonMentions);
            QVERIFY2(expected.isEmpty() ? !reason : reason && reason->contains(expected),
                     qPrintable(reason.value_or(QStringLiteral("none")) + " / " + expected));
        }
    }
};

QTEST_GUILESS_MAIN(WebEngineSupportTest)
#include "WebEngineSupportTest.moc"
