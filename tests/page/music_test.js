// The music and its position on an output and a clock that the test moves. Run by `node --test`.
const assert = require("node:assert");
const fs = require("node:fs");
const path = require("node:path");
const test = require("node:test");

const source = fs.readFileSync(path.join(__dirname, "../../src/hosts/page/web/music.js"), "utf8");

// A computer's clock, and an output that plays `latency` ms late. Its stamps are off by what `jitter` gives;
// currentTime moves in blocks of 10 ms, as outputs do.
class Machine {
    constructor({ latency = 40, rate = 1, jitter = () => 0, blocked = false, output = true } = {}) {
        Object.assign(this, { latency, rate, jitter, blocked });
        this.now = 1000;
        this.rendered = 5; // s, as if it had run for a while
        this.sources = [];
        const machine = this;
        this.context = {
            destination: {},
            get currentTime() {
                return Math.floor(machine.rendered * 100) / 100;
            },
            getOutputTimestamp() {
                const stamp = machine.rendered * 1000 - machine.latency + machine.jitter();
                return { contextTime: stamp / 1000, performanceTime: machine.now };
            },
            createBufferSource() {
                const made = { connect() {} };
                made.start = (at, offset) => Object.assign(made, { at, offset });
                made.stop = (end) => (made.end = end);
                machine.sources.push(made);
                return made;
            },
        };
        const performance = { now: () => this.now };
        const Music = new Function("performance", `${source}; return Music;`)(performance);
        this.notes = [];
        const pieces = { "first.mp3": { duration: 76.5 }, "second.mp3": { duration: 92.5 } };
        this.music = new Music(output ? this.context : null, pieces, (heard) => this.notes.push(heard));
    }

    // Lets `ms` pass, and reads the position about 60 times a second. Returns the readings.
    run(ms) {
        const readings = [];
        for (const end = this.now + ms; this.now < end; ) {
            this.now += 1000 / 60;
            if (!this.blocked) this.rendered += this.rate / 60;
            readings.push(this.music.position(this.now));
        }
        return readings;
    }

    // The position in the piece that is heard now, in ms: what the source does at the context's time.
    heard() {
        const source = this.sources.at(-1);
        return this.rendered * 1000 - this.latency - source.at * 1000 + source.offset * 1000;
    }
}

function assertNeverFalls(readings) {
    readings.reduce((before, reading) => (assert.ok(reading >= before, `${reading} after ${before}`), reading));
}

// A few jitters that repeat: no test depends on chance.
function jitterOf(size) {
    let i = 0;
    return () => size * [0.3, -1, 0.7, 1, -0.6, 0, -0.4, 0.9, -0.9][i++ % 9];
}

test("the position stays at the start until the first sample is heard, and then follows what is heard", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 0);
    for (let i = 0; i < 300; ++i) {
        const [position] = machine.run(1);
        assert.ok(Math.abs(position - Math.max(0, machine.heard())) < 0.01, `${position} for ${machine.heard()}`);
    }
});

test("stamps that jitter by 6 ms leave steps within 1 ms of the clock's", () => {
    const machine = new Machine({ jitter: jitterOf(6) });
    machine.music.play(1, "first.mp3", 0);
    machine.run(2000);
    const readings = machine.run(10000);
    assertNeverFalls(readings);
    for (let i = 1; i < readings.length; ++i) {
        assert.ok(Math.abs(readings[i] - readings[i - 1] - 1000 / 60) < 1);
    }
    assert.ok(Math.abs(readings.at(-1) - machine.heard()) < 6);
});

test("an output that is 0.1 % fast is followed, without drift", () => {
    const machine = new Machine({ rate: 1.001 });
    machine.music.play(1, "first.mp3", 0);
    machine.run(60000);
    assert.ok(Math.abs(machine.music.last - machine.heard()) < 1);
});

test("one piece follows the other at the same sample", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 0);
    machine.run(3000);
    machine.music.stop();
    machine.music.play(2, "second.mp3", 0);
    const [first, second] = machine.sources;
    assert.strictEqual(first.end, second.at);
    assert.strictEqual(second.offset, 0);
    const readings = machine.run(1000);
    assertNeverFalls(readings);
    assert.ok(Math.abs(readings.at(-1) - machine.heard()) < 0.01);
});

test("a piece that is played a few milliseconds after the stop follows without a gap", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 0);
    machine.run(3000);
    machine.music.stop();
    machine.rendered += 0.01;
    machine.now += 10;
    machine.music.play(2, "second.mp3", 0);
    const [first, second] = machine.sources;
    assert.strictEqual(first.end, second.at);
    assert.ok(second.at > machine.context.currentTime);
    machine.run(500);
    machine.music.stop();
    machine.run(500);
    machine.music.play(3, "first.mp3", 0);
    assert.ok(machine.sources.at(-1).at > machine.context.currentTime, "a stop long ago does not count");
});

test("a piece can begin at any of its places", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 72000);
    assert.ok(machine.run(1)[0] >= 72000);
    machine.run(1000);
    assert.ok(Math.abs(machine.music.last - machine.heard()) < 0.01);
    assert.ok(machine.music.last > 72800);
});

test("the position ends at the piece's length", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 76000);
    machine.run(2000);
    assert.strictEqual(machine.music.last, 76500);
});

test("while it is paused the position stands still, and the sound goes on from there", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 0);
    machine.run(2000);
    machine.music.pause();
    const position = machine.music.last;
    assert.ok(machine.sources.at(-1).end > 0, "it is silent");
    machine.run(5000);
    assert.strictEqual(machine.music.last, position);
    machine.music.resume();
    const readings = machine.run(1000);
    assertNeverFalls([position, ...readings]);
    assert.ok(readings[0] - position < 50);
    assert.ok(Math.abs(readings.at(-1) - machine.heard()) < 0.01);
    assert.deepStrictEqual(machine.notes, []);
});

test("what is played while it is paused is silent until it goes on, and then heard once", () => {
    const machine = new Machine();
    machine.music.pause();
    machine.music.play(1, "first.mp3", 0);
    machine.run(1000);
    assert.strictEqual(machine.sources.length, 0);
    assert.strictEqual(machine.music.last, 0);
    machine.music.resume();
    machine.run(1000);
    machine.music.pause();
    machine.music.stop();
    machine.music.play(2, "second.mp3", 500);
    machine.run(1000);
    assert.strictEqual(machine.music.last, 500);
    machine.music.resume();
    const readings = machine.run(1000);
    assertNeverFalls([500, ...readings]);
    const heard = machine.sources.filter((source) => source.end === undefined);
    assert.strictEqual(heard.length, 1);
    assert.ok(Math.abs(readings.at(-1) - machine.heard()) < 0.01);
});

test("without an output the position goes on by the clock, and that is said once", () => {
    const machine = new Machine({ blocked: true });
    machine.music.play(1, "first.mp3", 0);
    const readings = machine.run(5000);
    assertNeverFalls(readings);
    assert.deepStrictEqual(machine.notes, [false]);
    assert.ok(machine.music.last > 4500 && machine.music.last <= 5017);
    const at = machine.music.last;
    machine.run(1000);
    assert.ok(Math.abs(machine.music.last - at - 1000) < 17);
});

test("where there is no output at all the position goes on by the clock", () => {
    const machine = new Machine({ output: false });
    machine.music.play(1, "first.mp3", 0);
    assertNeverFalls(machine.run(3000));
    machine.music.pause();
    machine.run(1000);
    machine.music.resume();
    machine.run(1000);
    assert.ok(Math.abs(machine.music.last - 4000) < 51);
});

test("an output that is lost and comes back is heard in step again", () => {
    const machine = new Machine();
    machine.music.play(1, "first.mp3", 0);
    machine.run(2000);
    machine.blocked = true;
    const lost = machine.run(3000);
    assertNeverFalls(lost);
    machine.blocked = false;
    const found = machine.run(2000);
    assertNeverFalls([lost.at(-1), ...found]);
    assert.deepStrictEqual(machine.notes, [false, true]);
    assert.ok(Math.abs(machine.music.last - machine.heard()) < 1);
    // The time at the start until the first sample is heard, and that until the loss is noticed.
    assert.ok(machine.music.last <= 7020 && machine.music.last > 7000 - 100 - 350);
});

test("the switch keeps time without an output", () => {
    const machine = new Machine({ blocked: true });
    machine.music.play(1, "first.mp3", 73000);
    machine.run(1000);
    machine.music.stop();
    machine.music.play(2, "second.mp3", 0);
    machine.run(1000);
    assert.ok(Math.abs(machine.music.last - 1000) < 18);
});
