// Strips the chat widget vendor's branding and its voice-input button from the assistant's
// chat page, and keeps doing so as the page changes. Injected into every frame when the
// document is parsed and evaluated again in the main frame after each load; one observer per
// window, whichever copy comes first.
(function () {
    'use strict';

    var brandingPattern = /powered by\s+denser\s*ai/i;
    var voiceInputPattern = /voice input/i;
    var maxBrandingTextLength = 48;
    var chatControls = 'textarea, input:not([type="hidden" i]), form, ' +
        '[contenteditable="true" i], [role="textbox" i]';

    function normalizedText(element) {
        return (element.textContent || '').replace(/\s+/g, ' ').trim();
    }

    function cleanUp() {
        try {
            document.querySelectorAll('button[aria-label]').forEach(function (button) {
                if (voiceInputPattern.test(button.getAttribute('aria-label').trim()))
                    button.remove();
            });
            document.querySelectorAll('a').forEach(function (link) {
                var href = link.getAttribute('href') || '';
                if (brandingPattern.test(normalizedText(link)) ||
                    href.toLowerCase().indexOf('denser') !== -1)
                    link.remove();
            });
            // Short texts only, and never the container of the chat's own input.
            document.querySelectorAll('span, p, small, label, footer').forEach(function (element) {
                var text = normalizedText(element);
                if (text.length <= maxBrandingTextLength && brandingPattern.test(text) &&
                    !element.querySelector(chatControls))
                    element.remove();
            });
        } catch (error) {
            console.warn('QuorvelAssistant cleanup failed:', error);
        }
    }

    function start() {
        cleanUp();
        if (window.__quorvelAssistantBrandingObserver || !document.documentElement)
            return;
        var observer = new MutationObserver(cleanUp);
        observer.observe(document.documentElement, { childList: true, subtree: true });
        window.__quorvelAssistantBrandingObserver = observer;
    }

    if (document.readyState === 'loading')
        document.addEventListener('DOMContentLoaded', start, { once: true });
    else
        start();
})();
