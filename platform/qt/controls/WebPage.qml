// A page of the browser engine. Every address that isn't asked for by the program goes
// through the gate first.
import QtQuick
import QtWebEngine

WebEngineView {
    id: web

    property QtObject gate
    property bool trustsFiles: false
    property bool scalesToFit: false
    property real textScale: 1

    signal loaded(bool success, url address)
    signal posted(string message)
    signal read(string text)
    signal painted()
    signal alerted(string message)
    signal lost()

    function run(script) { web.runJavaScript(script); }
    function press(key) { web.runJavaScript("0", () => gate.pressKey(key)); }
    // A place of the page comes to the middle.
    function bringIntoSight(at) {
        web.runJavaScript("scrollBy({ left: " + (at.x - width / 2) / zoomFactor + ", top: " +
                          (at.y - height / 2) / zoomFactor + ", behavior: 'instant' })");
    }
    function scrollToPlace(name) {
        web.runJavaScript("(n => { const p = document.getElementById(n) || document.getElementsByName(n)[0];" +
                          " if (p) p.scrollIntoView(); else if (!n || n === 'top') window.scrollTo(0, 0); })(" +
                          JSON.stringify(name) + ")");
    }
    function fit() {
        if (!scalesToFit)
            return;
        web.runJavaScript("document.documentElement.scrollWidth", wide => {
            if (wide > web.width / web.zoomFactor)
                web.zoomFactor = Math.max(0.25, web.width / wide);
        });
    }
    // Tells when what is now in the page has been drawn.
    function watchPaint() {
        web.runJavaScript("requestAnimationFrame(() => requestAnimationFrame(() => console.debug('\\u0001painted')))");
    }

    profile: WebEngineProfile {
        offTheRecord: true
        httpCacheType: WebEngineProfile.MemoryHttpCache
        persistentCookiesPolicy: WebEngineProfile.NoPersistentCookies
    }
    settings.localContentCanAccessFileUrls: trustsFiles
    settings.localContentCanAccessRemoteUrls: trustsFiles
    settings.allowRunningInsecureContent: false
    settings.javascriptCanAccessClipboard: false
    settings.allowWindowActivationFromJavaScript: false
    settings.pluginsEnabled: false
    settings.fullScreenSupportEnabled: false
    settings.screenCaptureEnabled: false
    settings.hyperlinkAuditingEnabled: false
    settings.autoLoadIconsForPage: false
    settings.touchIconsEnabled: false
    settings.errorPageEnabled: false
    settings.showScrollBars: false
    settings.focusOnNavigationEnabled: false
    // Schemes that the engine would hand to the desktop: those that a hand follows come to
    // onNavigationRequested, which refuses them all; the rest ends in the engine.
    settings.unknownUrlSchemePolicy: WebEngineSettings.AllowUnknownUrlSchemesFromUserInteraction

    Component.onCompleted: {
        const script = WebEngine.script();
        script.name = "host";
        script.injectionPoint = WebEngineScript.DocumentCreation;
        script.worldId = WebEngineScript.MainWorld;
        script.runsOnSubFrames = false;
        // A link that leads nowhere (relative, on a page without an address) would put an
        // empty page in this one's place.
        script.sourceCode = "window.host = { post: m => console.debug('\\u0001post' + m) };" +
            "addEventListener('click', e => {" +
            "  const a = e.target.closest && e.target.closest('a[href], area[href]');" +
            "  if (a && a.protocol === ':') e.preventDefault(); }, true);";
        userScripts.insert(script);
    }

    onNavigationRequested: request => {
        // What the program asked for itself is typed.
        const type = request.navigationType;
        if (type !== WebEngineNavigationRequest.TypedNavigation
                && !gate.mayGo(request.url, request.isMainFrame,
                               type === WebEngineNavigationRequest.LinkClickedNavigation,
                               type === WebEngineNavigationRequest.RedirectNavigation))
            request.reject();
    }
    onNewWindowRequested: request => {
        if (request.userInitiated)
            gate.opensWindow(request.requestedUrl);
    }
    onLoadingChanged: info => {
        if (info.status === WebEngineView.LoadStartedStatus) {
            zoomFactor = textScale;
        } else if (info.status === WebEngineView.LoadSucceededStatus) {
            fit();
            web.runJavaScript("document.body ? document.body.innerText : ''", text => web.read(text || ""));
            loaded(true, info.url);
            watchPaint();
        } else if (info.status === WebEngineView.LoadFailedStatus) {
            loaded(false, info.url);
            painted();
        }
    }
    onJavaScriptConsoleMessage: (level, message) => {
        if (message === "\u0001painted")
            painted();
        else if (message.startsWith("\u0001post"))
            posted(message.substring(5));
    }
    onRenderProcessTerminated: lost()
    onContextMenuRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
    onJavaScriptDialogRequested: request => {
        request.accepted = true;
        if (request.type === JavaScriptDialogRequest.DialogTypeAlert) {
            alerted(request.message);
            request.dialogAccept();
        } else {
            request.dialogReject();
        }
    }
    onAuthenticationDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
    onFileDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
    onColorDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
}
