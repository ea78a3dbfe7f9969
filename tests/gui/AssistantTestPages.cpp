#include "AssistantTestPages.h"

namespace AssistantTestPages {

QByteArray chatPage(const QString &otherHost)
{
    QString html = QString::fromUtf8(R"html(<!doctype html>
<html><head><meta charset="utf-8"><title>Assistant</title><style>
body { margin: 0; font: 13px/1.4 "DejaVu Sans", sans-serif; color: #1d1d1f; background: #fff; }
header { padding: 10px 16px; border-bottom: 1px solid #e5e5ea; font-weight: bold; }
main { padding: 10px 16px; }
.bubble { background: #f2f2f7; border-radius: 12px; padding: 8px 12px; margin: 0 0 8px;
          max-width: 80%; }
.mine { background: #0a6ed1; color: #fff; margin-left: auto; width: max-content; }
.links a { display: block; height: 20px; line-height: 20px; color: #0a5cb8;
           text-decoration: none; }
iframe { border: 1px solid #e5e5ea; border-radius: 8px; width: 100%; height: 64px;
         margin-top: 8px; }
.composer { position: fixed; bottom: 0; left: 0; right: 0; padding: 8px 16px;
            border-top: 1px solid #e5e5ea; background: #fff; color: #8e8e93; font-size: 11px; }
.composer input { width: 50%; padding: 6px; }
</style></head><body>
<header>Assistant</header>
<main>
<div class="bubble mine">How do I add a computer?</div>
<div class="bubble">Open Computers, then Add Computer, or pick one that was found on your
network. <span id="long-text">Powered by Denser AI, with answers from our guide</span></div>
<div class="links">
<a id="to-slash" href="/aichat/">Start a new conversation</a>
<a id="to-thread" href="/aichat/thread/7">Earlier conversation</a>
<a id="to-x" href="/aichatx">Assistant settings</a>
<a id="to-other-host" href="OTHER/aichat">Open the chat in a browser</a>
<a id="to-blank" target="_blank" href="/aichat/help">Help with the assistant</a>
<a id="to-blank-other" target="_blank" href="OTHER/elsewhere">Release notes</a>
<a id="to-redirect" href="/aichat/redirect">Support portal</a>
<a id="to-file" href="file:///etc/hostname">A local file</a>
<a id="to-javascript" href="javascript:void(0)">Nothing at all</a>
</div>
<iframe id="frame" src="/aichat/frame" title="Sources"></iframe>
<span id="short-text">Powered by Denser AI, with answers from the team</span>
<a id="brand-link" href="https://www.denser.ai/?ref=chat">Chat widget</a>
<div><a id="brand-by-text" href="/aichat/about">powered by DENSER ai</a></div>
<footer id="hidden-input"><input type="hidden" name="session" value="7">Powered by Denser AI</footer>
<footer id="brand-footer">Powered by   Denser
  AI</footer>
</main>
<footer id="composer" class="composer"><input type="text" aria-label="Message"
 placeholder="Ask a question"> <button id="send" aria-label="Send">Send</button>
<button id="voice" aria-label=" Voice Input ">Mic</button> Powered by Denser AI</footer>
</body></html>
)html");
    return html.replace(QLatin1String("OTHER"), otherHost).toUtf8();
}

QByteArray framePage()
{
    return R"html(<!doctype html>
<html><body style="margin: 0; padding: 6px 10px; font: 12px 'DejaVu Sans', sans-serif">
<b>Sources</b>: Adding computers; Finding computers on the network
<button id="frame-voice" aria-label="voice input">Mic</button>
<p id="frame-long">Powered by Denser AI, with answers from our guide</p>
<footer id="frame-footer">Powered by Denser AI</footer>
</body></html>
)html";
}

void serve(LocalWebServer &server)
{
    const QString otherHost = server.url({}, QStringLiteral("localhost")).toString();
    for (const char *path : {"/aichat", "/aichat/", "/aichat/thread/7", "/aichat/help"})
        server.routePage(QLatin1String(path), chatPage(otherHost));
    server.routePage(QStringLiteral("/aichat/frame"), framePage());
    for (const char *path : {"/aichatx", "/elsewhere", "/gone"})
        server.routePage(QLatin1String(path), "<!doctype html><p>Another page</p>");
    LocalWebServer::Response redirect;
    redirect.status = 302;
    redirect.location =
        server.url(QStringLiteral("/gone"), QStringLiteral("localhost")).toEncoded();
    server.route(QStringLiteral("/aichat/redirect"), redirect);
    LocalWebServer::Response silent;
    silent.neverAnswers = true;
    server.route(QStringLiteral("/aichat/never"), silent);
}

} // namespace AssistantTestPages
