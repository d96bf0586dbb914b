// Runs the program and draws: in a worker, so that the page stays alive while the show computes its textures, or in
// the page itself where the browser lets no worker draw with WebGL 2. In a worker every picture leaves the canvas as
// a bitmap, which is seen at once; a canvas that belongs to the page shows its picture when the call returns.
//
// Messages to it:
//   start   module, fonts {name: bytes}, lengths {music file: ms}, english, width, height
//   frame   play, position (ms in what is played by that number), width, height
// and from it:
//   ready   webgl: whether it can draw
//   picture bitmap
//   play    play (the number of this play, from 1), name;  stop
//   drawn   a start or a frame is done
//   ended;  lost (the graphics);  crashed why
class Performer {
    // canvas: an OffscreenCanvas, or one in the page. send(message, transferred)
    constructor(canvas, send) {
        this.canvas = canvas;
        this.send = send;
        this.program = null;
        this.plays = 0;
        this.place = { play: 0, position: 0 }; // where the music is
        this.context = canvas.getContext("webgl2", {
            alpha: false,
            antialias: false,
            depth: false,
            stencil: false,
            powerPreference: "high-performance",
        });
        send({ type: "ready", webgl: Boolean(this.context) });
    }

    receive(message) {
        if (message.type === "start") this.start(message).catch((error) => this.fail(error));
        if (message.type === "frame") this.frame(message);
    }

    async start({ module, fonts, lengths, english, width, height }) {
        let answer = english ? "e" : "\n"; // to the show's question
        this.program = await createProgram({
            context: this.context,
            present: () => this.present(),
            musicLength: (name) => lengths[name] ?? -1,
            play: (name) => this.send({ type: "play", play: ++this.plays, name }),
            stop: () => this.send({ type: "stop" }),
            position: () => (this.place.play === this.plays ? this.place.position : 0),
            instantiateWasm: (imports, done) => {
                WebAssembly.instantiate(module, imports).then(done, (error) => this.fail(error));
                return {};
            },
            preRun: [
                (program) => {
                    for (const name in fonts) program.FS.writeFile(name, fonts[name]);
                },
            ],
            stdin: () => {
                const code = answer ? answer.charCodeAt(0) : null;
                answer = "";
                return code;
            },
            print: () => {},
            printErr: (text) => console.error(text),
        });
        this.frame({ play: 0, position: 0, width, height });
    }

    frame(place) {
        if (this.context.isContextLost()) return this.send({ type: "lost" });
        this.place = place;
        if (this.canvas.width !== place.width || this.canvas.height !== place.height) {
            this.canvas.width = place.width;
            this.canvas.height = place.height;
        }
        try {
            this.program._page_frame(place.width, place.height);
            this.send({ type: "drawn" });
        } catch (error) {
            if (error.name === "ExitStatus") this.send({ type: "ended" });
            else this.fail(error);
        }
    }

    present() {
        if (!this.canvas.transferToImageBitmap) return;
        const bitmap = this.canvas.transferToImageBitmap();
        this.send({ type: "picture", bitmap }, [bitmap]);
    }

    fail(error) {
        if (this.context.isContextLost()) this.send({ type: "lost" });
        else this.send({ type: "crashed", why: String(error) });
    }
}

// The worker's side.
function performInWorker() {
    const performer = new Performer(new OffscreenCanvas(1024, 768), (message, transferred) =>
        postMessage(message, transferred));
    onmessage = (event) => performer.receive(event.data);
}
