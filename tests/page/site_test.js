// The folder for a web space, as the build leaves it in $SITE. Run by `node --test`.
const assert = require("node:assert");
const fs = require("node:fs");
const path = require("node:path");
const test = require("node:test");
const zlib = require("node:zlib");

const site = process.env.SITE;
const read = (name) => fs.readFileSync(path.join(site, name));

test("all files are there, and no others", () => {
    assert.deepStrictEqual(fs.readdirSync(site).sort(), [
        "Arial", "Vera.ttf", "icon.png", "index.html", "licenses", "skav.js", "skav.wasm", "zev.mp3", "zev_voc.mp3",
    ]);
    for (const [, name] of read("skav.js").toString().matchAll(/href="(licenses\/[^"]+)"/g)) {
        assert.ok(read(name).length > 0, name);
    }
});

test("the page names its files by relative paths and nobody else's", () => {
    for (const [, address] of read("index.html").toString().matchAll(/(?:src|href)="([^"]*)"/g)) {
        assert.match(address, /^[a-z]+\.[a-z]+(\?[0-9a-f]+)?$/);
    }
});

test("the sizes that the page expects are those of the files", () => {
    const files = /const FILES = (\{[^}]*\})/.exec(read("skav.js").toString())[1];
    for (const [name, size] of Object.entries(JSON.parse(files.replace(/,\s*\}/, "}")))) {
        assert.strictEqual(read(name).length, size, name);
    }
});

test("the program takes at most 220 KB on its way", () => {
    const size = (name) => zlib.brotliCompressSync(read(name)).length;
    assert.ok(size("skav.wasm") + size("skav.js") <= 220_000);
});
