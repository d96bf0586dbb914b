// The music, and the position in it, which is the show's only clock.
//
// The position follows what is heard: the output's time stamps, extrapolated with the computer's clock and smoothed,
// because stamps jitter. While the output stands still (there is no device, or the browser blocks the sound) the
// position goes on by the computer's clock, silently; as soon as the output moves, the sound starts at the position.
// It never falls while a piece plays. Times are milliseconds of performance.now().
class Music {
    // context: an AudioContext, or null where there is none. pieces: {name: AudioBuffer}. onSound(heard) is told when
    // the sound is lost or comes back.
    constructor(context, pieces, onSound) {
        this.context = context;
        this.pieces = pieces;
        this.onSound = onSound;
        this.playing = 0; // the number of the play, 0: none
        this.name = null;
        this.source = null;
        this.stopsAt = 0; // when the last source falls silent, in the context's seconds
        this.paused = false;
        this.last = 0; // the last position returned, ms
        this.origin = 0; // the piece's position 0, on the clock in force
        this.heard = Boolean(context); // whether the clock in force is the output's, else performance.now()
        this.output = { time: 0, seen: 0, moved: 0, value: -1, steps: 0 };
    }

    // Plays a piece from `position` ms, in place of what plays; after resume() if it is paused.
    play(number, name, position) {
        const now = performance.now();
        this.stopSource();
        this.playing = number;
        this.name = name;
        this.last = position;
        if (this.paused) return;
        if (this.heard) {
            const soon = this.context.currentTime + Music.LEAD;
            const follows = this.stopsAt > soon - Music.LEAD / 2; // what was stopped a moment ago still sounds
            const at = follows ? this.stopsAt : soon;
            this.startSource(at, position);
            this.origin = at * 1000 - position;
        } else {
            this.origin = now - position;
        }
    }

    stop() {
        this.stopSource();
        this.playing = 0;
    }

    // Stands still at the position reached, until resume().
    pause() {
        if (this.paused) return;
        this.position(performance.now());
        this.paused = true;
        this.stopSource();
    }

    resume() {
        if (!this.paused) return;
        this.paused = false;
        const now = performance.now();
        this.output.moved = now; // what stood still meanwhile does not count
        this.continueAt(now, this.last);
    }

    // How far the piece is heard, in ms. Call it regularly: it also notices when the output stops or comes back.
    position(now) {
        if (!this.playing || this.paused) return this.last;
        this.watchOutput(now);
        const clock = this.heard ? this.outputTime(now) : now;
        const length = this.pieces[this.name].duration * 1000;
        this.last = Math.min(Math.max(this.last, clock - this.origin), length);
        return this.last;
    }

    // Notes whether the output moves, and changes the clock when it has stopped or begun to.
    watchOutput(now) {
        if (!this.context) return;
        const output = this.output;
        if (this.context.currentTime !== output.value) {
            output.value = this.context.currentTime;
            if (!this.heard && ++output.steps > Music.STEPS_OF_LIFE) this.change(now, true);
            output.moved = now;
        } else if (this.heard && now - output.moved > Music.PATIENCE) {
            this.change(now, false);
        }
    }

    // Goes over to the output's clock or to the computer's, at the same position.
    change(now, heard) {
        const clock = this.heard ? this.outputTime(now) : now;
        const position = Math.max(this.last, clock - this.origin);
        this.heard = heard;
        this.output.steps = 0;
        this.output.seen = 0;
        this.stopSource();
        this.continueAt(now, position);
        this.onSound(heard);
    }

    // Lets the piece go on so that it is at `position` now.
    continueAt(now, position) {
        if (!this.playing) return;
        if (!this.heard) {
            this.origin = now - position;
            return;
        }
        this.output.seen = 0;
        const time = this.outputTime(now);
        this.origin = time - position;
        const at = this.context.currentTime + Music.LEAD;
        this.startSource(at, Math.max(0, at * 1000 - this.origin));
    }

    // What is heard now, in ms of the context's time.
    outputTime(now) {
        const output = this.output;
        const stamp = this.context.getOutputTimestamp ? this.context.getOutputTimestamp() : null;
        const measured = stamp && stamp.performanceTime > 0
            ? stamp.contextTime * 1000 + now - stamp.performanceTime
            : (this.context.currentTime - (this.context.outputLatency || 0)) * 1000;
        const expected = output.time + now - output.seen;
        const off = measured - expected;
        output.time = output.seen > 0 && Math.abs(off) < Music.JUMP ? expected + off * Music.SMOOTHING : measured;
        output.seen = now;
        return output.time;
    }

    // Starts the piece at `position` ms, at the context's second `at`.
    startSource(at, position) {
        this.source = this.context.createBufferSource();
        this.source.buffer = this.pieces[this.name];
        this.source.connect(this.context.destination);
        this.source.start(at, position / 1000);
    }

    // Ends the sound a moment from now, so that another can begin at that very sample.
    stopSource() {
        if (!this.source) return;
        this.stopsAt = this.context.currentTime + Music.LEAD;
        this.source.stop(this.stopsAt);
        this.source = null;
    }
}
Music.LEAD = 0.03; // s, for the output to take in a change
Music.PATIENCE = 300; // ms that the output may stand still
Music.STEPS_OF_LIFE = 5; // an output that has moved so often is alive
Music.JUMP = 50; // ms; more than that is not jitter
Music.SMOOTHING = 0.05; // of a stamp's deviation, in each reading
