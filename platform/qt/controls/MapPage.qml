// The page of the browser engine that draws a map's ground. It is the program's own and
// goes nowhere else: no address is followed, nothing is asked of the user.
import QtQuick
import QtWebEngine

WebEngineView {
    id: web

    signal loaded(bool success)
    signal posted(string message)
    signal lost()

    // A text is handed on as a text: what it holds is data to the page.
    function tell(name, text) { web.runJavaScript(name + "(" + JSON.stringify(text) + ")"); }

    profile: WebEngineProfile {
        offTheRecord: true
        httpCacheType: WebEngineProfile.MemoryHttpCache
        httpCacheMaximumSize: 32 * 1024 * 1024
        persistentCookiesPolicy: WebEngineProfile.NoPersistentCookies
    }

    settings.localContentCanAccessFileUrls: false
    settings.localContentCanAccessRemoteUrls: true
    settings.allowRunningInsecureContent: false
    settings.javascriptCanAccessClipboard: false
    settings.allowWindowActivationFromJavaScript: false
    settings.localStorageEnabled: false
    settings.pluginsEnabled: false
    settings.fullScreenSupportEnabled: false
    settings.screenCaptureEnabled: false
    settings.autoLoadIconsForPage: false
    settings.touchIconsEnabled: false
    settings.errorPageEnabled: false
    settings.showScrollBars: false
    settings.focusOnNavigationEnabled: false

    onNavigationRequested: request => {
        if (request.navigationType !== WebEngineNavigationRequest.TypedNavigation)
            request.reject();
    }
    onNewWindowRequested: request => {}
    onFeaturePermissionRequested: (origin, feature) => web.grantFeaturePermission(origin, feature, false)
    onLoadingChanged: info => {
        if (info.status === WebEngineView.LoadSucceededStatus)
            loaded(true);
        else if (info.status === WebEngineView.LoadFailedStatus)
            loaded(false);
    }
    onJavaScriptConsoleMessage: (level, message) => {
        if (message.startsWith("\u0001post"))
            posted(message.substring(5));
        else if (level !== WebEngineView.InfoMessageLevel)
            console.warn("map page: " + message);
    }
    onRenderProcessTerminated: lost()
    onContextMenuRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
    onJavaScriptDialogRequested: request => {
        request.accepted = true;
        request.dialogReject();
    }
}
