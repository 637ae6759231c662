// The ground of a map, drawn with Leaflet as the view tree says. The tree's side is
// qt::MapItem; both ways go plain messages, one JSON text each:
//
//   in   {serial, camera: {lat, lng, zoom, animate, revision}, forget, pins: [lat, lng, …],
//         window: {index, lat, lng, title, snippet, w, h, gap, padding, sizes}, focus: [lat, lng],
//         here: [lat, lng], touched}: what has changed; a null ends what was there
//   out  {camera, revision} after a move of the user's, {tap: pin}, {windowTap}, {groundTap},
//        {alone: [pin, …]} that lie in no cluster, {rest: serial} once all that was said up to
//        then is drawn, {moving} when a finger or an animation sets out
//
// Texts come to the page as texts and stay that: they are set as textContent only.
"use strict";

const send = message => console.debug("\u0001post" + JSON.stringify(message));

// The library would give every tile that it lets go an empty picture, inline; the page
// may show pictures of the tiles' host only.
L.TileLayer.include({
    _abortLoading() {},
    _removeTile(key) { return L.GridLayer.prototype._removeTile.call(this, key); }
});

const map = L.map("map", {
    attributionControl: false, zoomControl: false, boxZoom: false, keyboard: false, tap: false,
    trackResize: false, fadeAnimation: false, minZoom: 3, maxZoom: 19, worldCopyJump: false
});
const pins = L.markerClusterGroup({
    animate: false, showCoverageOnHover: false, maxClusterRadius: zoom => zoom < 17 ? 56 : zoom < 18 ? 40 : zoom < 19 ? 24 : 12, spiderLegPolylineOptions: {
        color: "#5a646e", weight: 1.5, opacity: 0.7
    },
    iconCreateFunction: cluster => {
        const count = cluster.getChildCount();
        const side = count < 10 ? 36 : count < 100 ? 42 : count < 1000 ? 48 : 54;
        const face = document.createElement("span");
        face.textContent = count;
        return L.divIcon({className: "cluster", html: face, iconSize: [side, side]});
    }
});
const pinIcon = className => L.divIcon({className, html: "", iconSize: [30, 40], iconAnchor: [15, 40]});
const plainPin = pinIcon("pin");
const openPin = pinIcon("pin open");

let all = [];             // pins, by index
let camera = null;        // as last said, by either side
let commanded = false;    // the move under way is the tree's
let moving = false, loading = false;
let touchEnded = false, awaitingTouch = 0;  // a finger's end is told from outside as well
let heard = 0;            // serial of the last message
let tiles = null, windowParts = [], ring = null, here = null;

// --- Out.

function tellAlone() {
    const alone = [];
    map.eachLayer(layer => { if (layer.pin !== undefined) alone.push(layer.pin); });
    send({alone});
}

let restAsked = false;
function restSoon() {
    if (restAsked || moving || loading || awaitingTouch) return;
    restAsked = true;
    requestAnimationFrame(() => requestAnimationFrame(() => {
        restAsked = false;
        if (!moving && !loading && !awaitingTouch) send({rest: heard});
    }));
}

map.on("movestart zoomstart", () => {
    if (!moving) send({moving: true});
    moving = true;
});
map.on("moveend", () => {
    moving = false;
    if (commanded) {
        commanded = false;
    } else {
        const centre = map.getCenter();
        camera = {lat: centre.lat, lng: centre.lng, zoom: map.getZoom(), revision: camera.revision};
        send({camera: {lat: camera.lat, lng: camera.lng, zoom: camera.zoom}, revision: camera.revision});
    }
    tellAlone();
    restSoon();
});
pins.on("spiderfied unspiderfied", () => { tellAlone(); restSoon(); });
pins.on("click", event => send({tap: event.layer.pin}));
map.on("click", () => send({groundTap: true}));
window.addEventListener("resize", () => {
    if (!camera) return;
    map.invalidateSize({pan: false});
    look(false);
});

// Messages and touches come by different ways: of a finger that has left, the page may hear
// first from the one or from the other.
function touchIsOver() {
    clearTimeout(awaitingTouch);
    awaitingTouch = 0;
    touchEnded = false;
    restSoon();
}
document.addEventListener("pointerdown", () => { touchEnded = false; }, true);
for (const end of ["pointerup", "pointercancel"])
    document.addEventListener(end, () => {
        touchEnded = true;
        if (awaitingTouch) setTimeout(touchIsOver);
    }, true);

// --- In.

function look(animate) {
    commanded = true;
    map.setView([camera.lat, camera.lng], camera.zoom, {animate});
}

function addPins(places) {
    const fresh = [];
    for (let i = 0; i < places.length; i += 2) {
        const pin = L.marker([places[i], places[i + 1]], {icon: plainPin, keyboard: false});
        pin.pin = all.length;
        all.push(pin);
        fresh.push(pin);
    }
    pins.addLayers(fresh);
    tellAlone();
}

function part(place, icon, z, tap) {
    const made = L.marker(place, {icon, keyboard: false, interactive: !!tap, zIndexOffset: z});
    if (tap) made.on("click", tap);
    return made.addTo(map);
}

function textPart(className, text, size) {
    const made = document.createElement("div");
    made.className = className;
    made.textContent = text;
    made.style.fontSize = size + "px";
    return made;
}

function showWindow(shown) {
    windowParts.forEach(made => made.remove());
    windowParts = [];
    if (!shown) return;
    const inner = document.createElement("div");
    inner.style.padding = shown.padding + "px";
    inner.append(textPart("title", shown.title, shown.sizes[0]));
    if (shown.snippet) inner.append(textPart("snippet", shown.snippet, shown.sizes[1]));
    const place = [shown.lat, shown.lng];
    const box = L.divIcon({className: "window", html: inner, iconSize: [shown.w, shown.h],
                           iconAnchor: [shown.w / 2, shown.h + 40 + shown.gap]});
    windowParts = [part(place, openPin, 10000, () => send({tap: shown.index})),
                   part(place, box, 20000, () => send({windowTap: true}))];
}

function receive(text) {
    const message = JSON.parse(text);
    heard = message.serial;
    if (message.touched && !touchEnded && !awaitingTouch)
        awaitingTouch = setTimeout(touchIsOver, 3000);
    if (message.touched) touchEnded = false;
    if (message.forget) {
        pins.clearLayers();
        all = [];
    }
    if (message.camera) {
        const first = !camera;
        camera = message.camera;
        look(camera.animate);
        if (first) {
            map.addLayer(pins);
            if (tiles) map.addLayer(tiles);
        }
    }
    if (message.pins) addPins(message.pins);
    if (message.window !== undefined) showWindow(message.window);
    if (message.focus !== undefined) {
        if (ring) ring.remove();
        ring = message.focus && part(message.focus, L.divIcon(
            {className: "ring", html: "", iconSize: [40, 50], iconAnchor: [20, 45]}), 15000);
    }
    if (message.here !== undefined) {
        if (here) here.remove();
        here = message.here && part(message.here, L.divIcon(
            {className: "here", html: "", iconSize: [20, 20]}), -1000);
    }
    restSoon();
}

function begin(text) {
    const start = JSON.parse(text);
    document.documentElement.style.setProperty("--accent", start.accent);
    if (!start.tiles) return;
    tiles = L.tileLayer(start.tiles, {maxZoom: 19, keepBuffer: 1});
    tiles.on("loading", () => { loading = true; });
    tiles.on("load", () => { loading = false; restSoon(); });
}
