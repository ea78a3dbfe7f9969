#include "services/AssistantNavigationPolicy.h"

#include <QTest>

using Decision = AssistantNavigationPolicy::Decision;

namespace {

const char ours[] = "https://www.quorvel.com/aichat";

} // namespace

class AssistantNavigationPolicyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void insideTheChatPage()
    {
        struct Row {
            const char *chat, *url;
            bool inside;
        };
        for (const Row &row : std::initializer_list<Row>{
                 {ours, "https://www.quorvel.com/aichat", true},
                 {ours, "https://www.quorvel.com/aichat/", true},
                 {ours, "https://www.quorvel.com/aichat/thread/7", true},
                 {ours, "https://www.quorvel.com/aichat?t=7#end", true},
                 {ours, "http://www.quorvel.com:8080/aichat", true}, // the port is not compared
                 {ours, "HTTPS://WWW.Quorvel.COM/aichat", true},
                 {"https://www.quorvel.com/aichat/", "https://www.quorvel.com/aichat", true},
                 {ours, "https://www.quorvel.com/aichat//", true}, // one slash dropped
                 {ours, "https://www.quorvel.com/aichatx", false},
                 {ours, "https://www.quorvel.com/AICHAT", false},
                 {ours, "https://www.quorvel.com/", false},
                 {ours, "https://quorvel.com/aichat", false},
                 {"http://127.0.0.1:8080/aichat", "http://localhost:8080/aichat", false},
                 {ours, "ftp://www.quorvel.com/aichat", false},
                 {ours, "file:///aichat", false},
                 {ours, "javascript:location='/aichat'", false},
                 {ours, "https:/aichat", false},                  // one absent host
                 {"http:/aichat", "http:/aichat/thread/7", true}, // two absent hosts
             }) {
            const AssistantNavigationPolicy policy{QUrl(QLatin1String(row.chat))};
            QVERIFY2(policy.isInsideChatPage(QUrl(QLatin1String(row.url))) == row.inside, row.url);
        }
    }

    void navigationsAndPopUps()
    {
        struct Row {
            const char *url;
            bool isMainFrame, isClicked;
            Decision navigation;
            bool popUpOpened;
        };
        const Decision open = Decision::RefuseAndOpenExternally;
        const Decision refuse = Decision::Refuse;
        for (const Row &row : std::initializer_list<Row>{
                 {"", true, true, Decision::Allow, false},
                 {"https://widget.example/", false, false, Decision::Allow, false},
                 {"https://www.quorvel.com/aichat/7", true, true, Decision::Allow, true},
                 {"https://www.quorvel.com/aichat/", true, false, Decision::Allow, true},
                 {"https://www.quorvel.com/aichatx", true, true, open, true},
                 {"https://elsewhere.example/", true, false, refuse, false}, // redirect, script
                 {"mailto:support@quorvel.com", true, true, open, true},
                 {"file:///etc/passwd", true, true, refuse, false},
                 {"javascript:alert(1)", true, true, refuse, false},
                 {"https:/aichatx", true, true, refuse, false},
                 {"vnc://10.0.0.7", true, true, refuse, false},
             }) {
            const AssistantNavigationPolicy policy{QUrl(QLatin1String(ours))};
            const QUrl url(QLatin1String(row.url));
            QVERIFY2(policy.navigation(url, row.isMainFrame, row.isClicked) == row.navigation,
                     row.url);
            QVERIFY2(policy.opensPopUpExternally(url, row.isClicked) == row.popUpOpened, row.url);
        }
    }
};

QTEST_GUILESS_MAIN(AssistantNavigationPolicyTest)
#include "AssistantNavigationPolicyTest.moc"
