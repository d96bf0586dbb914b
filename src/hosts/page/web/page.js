// The page: start, loading, show, end and what can go wrong. Its state is the body's data-state:
//   loading -> ready -> starting -> playing -> ended
// A click while it loads leads to starting; a fault leads to failed, from where it starts again if it can.
//
// In the address:
//   #en, #de       the language
//   ?t=SECONDS     starts there; the cues before fire in the first frame
//   ?clock=frames  nothing moves by itself: skav.frame(ms of show time) draws a frame there
class Page {
    constructor() {
        const parameters = new URLSearchParams(location.search);
        this.begin = Math.max(0, Number(parameters.get("t")) || 0) * 1000; // ms of show time
        this.byFrames = parameters.get("clock") === "frames";
        this.loaded = false;
        this.music = null;
        this.context = null; // of the sound
        this.performer = null;
        this.drawing = false; // the performer is at work
        this.canStart = true;
        this.request = { type: "frame", play: 0, position: 0, width: 0, height: 0 };
        this.tick = this.tick.bind(this);
        this.setLanguage(this.languageOfAddress());
        this.installControls();
        this.setState("loading");
        this.files = this.load();
        this.files.catch((problem) => this.fail(problem));
    }

    // --- Languages, texts, controls

    languageOfAddress() {
        const wanted = [location.hash.slice(1), ...(navigator.languages || [])];
        for (const language of wanted) {
            const code = language.slice(0, 2).toLowerCase();
            if (code in TEXTS) return code;
        }
        return "en";
    }

    setLanguage(language) {
        this.language = language;
        this.texts = TEXTS[language];
        document.documentElement.lang = language;
        for (const name of ["lead", "warning", "needs", "licences"]) element(name).innerHTML = this.texts[name];
        element("licences").hidden = false;
        element("again").textContent = this.texts.again;
        this.showMessage();
        this.showProgress();
        this.showChoice();
    }

    setState(state) {
        this.state = document.body.dataset.state = state;
        const playing = state === "playing";
        element("start").hidden = playing;
        element("stage").hidden = !playing;
        element("loading").hidden = !["loading", "ready", "starting"].includes(state);
        element("needs").hidden = element("languages").hidden = !this.canStart;
        if (state !== "failed") this.problem = state === "ended" ? ["ended"] : null;
        this.showMessage();
        this.showProgress();
        this.showChoice();
    }

    // The button that Return presses stands out: the language, or after a show "again".
    showChoice() {
        const again = this.state === "ended" || this.state === "failed";
        element("again").hidden = !again;
        const choice = again ? "again" : this.language;
        for (const name of ["de", "en", "again"]) element(name).classList.toggle("chosen", name === choice);
    }

    // A text by its name and the parts that vary.
    showMessage() {
        const message = element("message");
        message.hidden = !this.problem;
        if (!this.problem) return;
        const [name, ...parts] = this.problem;
        const text = this.texts[name];
        message.textContent = parts.length ? text(...parts) : text;
    }

    showNote(name) {
        const note = element("note");
        note.textContent = this.texts[name];
        note.hidden = false;
        clearTimeout(this.noteTimer);
        this.noteTimer = setTimeout(() => (note.hidden = true), 6000);
    }

    installControls() {
        for (const name of ["de", "en"]) {
            element(name).addEventListener("click", () => {
                this.setLanguage(name);
                this.start();
            });
        }
        element("again").addEventListener("click", () => this.start());
        element("stage").addEventListener("dblclick", toggleFullScreen);
        addEventListener("hashchange", () => this.setLanguage(this.languageOfAddress()));
        addEventListener("keydown", (event) => this.onKey(event));
        addEventListener("pointerdown", () => this.wakeSound());
        document.addEventListener("visibilitychange", () => this.onVisibility());
    }

    onKey(event) {
        if (event.ctrlKey || event.altKey || event.metaKey || event.repeat) return;
        this.wakeSound();
        const key = event.key.toLowerCase();
        if (key === "f") toggleFullScreen();
        if (this.state === "playing") return;
        if (key === "d") element("de").click();
        if (key === "e") element("en").click();
        if (key === "enter" && document.activeElement.tagName !== "BUTTON") this.start();
    }

    // --- Loading

    async load() {
        if (location.protocol === "file:") throw ["from_file"];
        if (!isBrowserNewEnough()) throw ["too_old"];
        const [performer, files] = await Promise.all([this.connect(), this.fetchAll()]);
        this.performer = performer;
        this.decoding = true;
        this.showProgress();
        const pieces = {};
        const [module] = await Promise.all([
            compile("skav.wasm", files),
            ...["zev.mp3", "zev_voc.mp3"].map(async (name) => (pieces[name] = await decode(name, files[name]))),
        ]);
        this.loaded = true;
        if (this.state === "loading") this.setState("ready");
        return { module, pieces, fonts: { "Vera.ttf": files["Vera.ttf"], Arial: files.Arial } };
    }

    async fetchAll() {
        this.arrived = 0;
        const files = {};
        await Promise.all(
            Object.keys(FILES).map(async (name) => {
                files[name] = await this.fetchFile(name);
            }),
        );
        return files;
    }

    async fetchFile(name) {
        const bytes = new Uint8Array(FILES[name]);
        let end = 0;
        try {
            const response = await fetch(name, { cache: "no-cache" }); // all of one version
            if (!response.ok) throw response.status;
            const reader = response.body.getReader();
            for (let part = await reader.read(); !part.done; part = await reader.read()) {
                bytes.set(part.value, end);
                end += part.value.length;
                this.arrived += part.value.length;
                this.showProgress();
            }
        } catch (error) {
            throw ["missing", name];
        }
        if (end !== bytes.length) throw ["missing", name];
        return bytes;
    }

    showProgress() {
        const all = Object.values(FILES).reduce((sum, size) => sum + size, 0);
        const bar = element("progress");
        bar.max = all;
        bar.value = this.arrived || 0;
        const text = this.texts.loaded(megabytes(this.arrived || 0), megabytes(all));
        element("loaded").textContent =
            this.state === "ready" ? this.texts.ready : this.decoding ? this.texts.decoding : text;
    }

    // --- The performer

    // A performer that can draw: in a worker, or else in the page.
    async connect() {
        const performer = (await this.connectWorker()) || this.connectPage();
        if (performer) return performer;
        throw ["no_webgl"];
    }

    // Resolves to null where a worker cannot draw.
    connectWorker() {
        if (!("OffscreenCanvas" in window && "ImageBitmapRenderingContext" in window)) return null;
        return new Promise((resolve) => {
            const worker = new Worker(SCRIPT);
            worker.onerror = () => resolve(null);
            worker.onmessage = (event) => {
                if (!event.data.webgl) {
                    worker.terminate();
                    return resolve(null);
                }
                const canvas = document.createElement("canvas");
                const bitmaps = canvas.getContext("bitmaprenderer");
                worker.onmessage = ({ data }) => {
                    if (data.type === "picture") bitmaps.transferFromImageBitmap(data.bitmap);
                    else this.receive(data);
                };
                worker.onerror = (error) => this.receive({ type: "crashed", why: error.message });
                resolve({ canvas, send: (message) => worker.postMessage(message), end: () => worker.terminate() });
            };
        });
    }

    connectPage() {
        const canvas = document.createElement("canvas");
        let ready = false;
        const performer = new Performer(canvas, (message) => {
            if (message.type === "ready") ready = message.webgl;
            else if (message.type !== "picture") this.receive(message);
        });
        return ready ? { canvas, send: (message) => performer.receive(message), end: () => {} } : null;
    }

    receive(message) {
        if (this.state !== "playing") return;
        if (message.type === "play") this.music.play(message.play, message.name, this.beginOf(message.name));
        if (message.type === "stop") this.music.stop();
        if (message.type === "drawn") this.onDrawn();
        if (message.type === "ended") this.finish("ended");
        if (message.type === "lost") this.fail(["lost"]);
        if (message.type === "crashed") this.fail(["crashed", message.why]);
    }

    // Where a piece begins, in ms: at its start unless the address says otherwise.
    beginOf(name) {
        const place = this.begin - (name === "zev.mp3" ? 0 : VOCAL_START);
        return Math.max(0, Math.min(place, this.music.pieces[name].duration * 1000));
    }

    // --- The show

    // Starts the show in the page's language, from the beginning. Called by a click or a key, without which a browser
    // gives no sound.
    async start() {
        if (["starting", "playing"].includes(this.state) || !this.canStart) return;
        this.setState("starting");
        this.context = this.context || openSound();
        this.wakeSound();
        try {
            const { module, fonts, pieces } = await this.files;
            this.performer = this.performer || (await this.connect());
            this.play(module, fonts, pieces);
        } catch (problem) {
            this.fail(problem);
        }
    }

    play(module, fonts, pieces) {
        const Player = this.byFrames ? FramePosition : Music;
        this.music = new Player(this.context, pieces, (heard) => this.showNote(heard ? "sound_back" : "silent"));
        const lengths = {};
        for (const name in pieces) lengths[name] = Math.floor(pieces[name].duration * 1000);
        element("stage").replaceChildren(this.performer.canvas);
        this.setState("playing");
        this.onVisibility(); // the tab may have been hidden while the files came
        this.drawing = true;
        const { width, height } = this.fitCanvas();
        const english = this.language === "en";
        this.performer.send({ type: "start", module, fonts, lengths, english, width, height });
        if (!this.context) this.showNote("silent");
        keepScreenOn();
        requestAnimationFrame(this.tick);
    }

    tick(now) {
        if (this.state !== "playing") return;
        requestAnimationFrame(this.tick);
        const position = this.music.position(now);
        if (!this.byFrames && !this.drawing && this.music.playing) this.drawFrame(position);
    }

    drawFrame(position) {
        this.drawing = true;
        this.request.play = this.music.playing;
        this.request.position = position;
        Object.assign(this.request, this.fitCanvas());
        this.performer.send(this.request);
    }

    onDrawn() {
        this.drawing = false;
        if (this.whenDrawn) this.whenDrawn();
    }

    // Draws a frame at `time` ms of show time; resolves when it is seen. For ?clock=frames.
    frame(time) {
        return new Promise((resolve) => {
            this.whenDrawn = resolve;
            this.drawFrame(this.music.positionAt(time));
        });
    }

    // Fits the canvas to the window: 4:3, in the device's own pixels, at most four times the show's size. Returns the
    // picture's size.
    fitCanvas() {
        const ratio = devicePixelRatio || 1;
        const unit = Math.min(innerWidth / 4, innerHeight / 3); // a quarter of the picture's width
        const height = Math.max(3, Math.min(Math.round(unit * 3 * ratio), 4 * 768));
        const width = Math.round((height * 4) / 3);
        const style = this.performer.canvas.style;
        style.width = `${unit * 4}px`;
        style.height = `${unit * 3}px`;
        return { width, height };
    }

    onVisibility() {
        if (this.state !== "playing" || this.byFrames) return;
        if (document.hidden) this.music.pause();
        else {
            this.wakeSound();
            this.music.resume();
            keepScreenOn();
        }
    }

    wakeSound() {
        if (this.context && this.context.state !== "running") this.context.resume().catch(() => {});
    }

    // problem: the name of a text and its parts, or an error that nobody has foreseen.
    fail(problem) {
        this.problem = Array.isArray(problem) ? problem : ["crashed", problem];
        this.canStart = this.loaded;
        this.finish("failed");
    }

    finish(state) {
        if (this.music) this.music.stop();
        if (this.performer) this.performer.end();
        this.performer = null;
        this.music = null;
        element("note").hidden = true;
        this.setState(state);
    }
}

// The position for ?clock=frames: that of the frame which is asked for.
class FramePosition {
    constructor(context, pieces) {
        this.pieces = pieces;
        this.playing = 0;
        this.name = null;
    }
    play(number, name) {
        this.playing = number;
        this.name = name;
    }
    stop() {
        this.playing = 0;
    }
    position() {
        return 0;
    }
    positionAt(time) {
        return this.name === "zev.mp3" ? time : Math.max(0, time - VOCAL_START);
    }
}

const VOCAL_START = 74300; // ms of show time
// WebAssembly of one function, which makes a vector: () => i32x4.splat(0). The show's drawing computes with vectors.
const VECTOR_PROGRAM = new Uint8Array([
    0, 0x61, 0x73, 0x6d, 1, 0, 0, 0, 1, 5, 1, 0x60, 0, 1, 0x7b, 3, 2, 1, 0, 10, 8, 1, 6, 0, 0x41, 0, 0xfd, 0x11, 0x0b,
]);
const SCRIPT = typeof document === "undefined" ? "" : document.currentScript.src;

function element(name) {
    return document.getElementById(name);
}

function megabytes(bytes) {
    return (bytes / 1e6).toFixed(1);
}

function isBrowserNewEnough() {
    const names = ["WebAssembly", "AudioContext", "OfflineAudioContext", "ReadableStream"];
    return names.every((name) => name in window) && WebAssembly.validate(VECTOR_PROGRAM);
}

async function compile(name, files) {
    try {
        return await WebAssembly.compile(files[name]);
    } catch (error) {
        throw ["missing", name]; // it is another file, or a broken one
    }
}

async function decode(name, bytes) {
    try {
        return await new OfflineAudioContext(2, 1, 44100).decodeAudioData(bytes.buffer);
    } catch (error) {
        throw ["bad_music", name];
    }
}

// Null where there is no sound.
function openSound() {
    try {
        return new AudioContext();
    } catch (error) {
        return null;
    }
}

function toggleFullScreen() {
    const page = document.documentElement;
    if (document.fullscreenElement) document.exitFullscreen();
    else if (page.requestFullscreen) page.requestFullscreen().catch(() => {});
}

// A phone would switch its screen off before the show is over.
function keepScreenOn() {
    if (navigator.wakeLock) navigator.wakeLock.request("screen").catch(() => {});
}

if (typeof document === "undefined") performInWorker();
else window.skav = new Page();
