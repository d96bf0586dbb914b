"""Usage: take_stills.py SITE MOMENTS OUTPUT_FOLDER

Draws the pictures that MOMENTS lists in Chromium, as OUTPUT_FOLDER/LANGUAGE/TIME.png, the way skav-export does: ten
frames a second from the start of the show, as some scenes follow from their earlier frames. Those that are not wanted
are drawn in a tiny window, which takes less time.
"""

import base64
import pathlib
import shutil
import sys

from browser import Browser, Server

FRAME = 100  # ms of show time
FULL = (1024, 768)
TINY = (64, 48)

# Draws frames at the given times and returns the last one's picture.
DRAW = """(async () => {
    for (const time of %s) await skav.frame(time);
    const blob = await new Promise((resolve) => skav.performer.canvas.toBlob(resolve));
    const reader = new FileReader();
    return await new Promise((resolve) => {
        reader.onload = () => resolve(reader.result);
        reader.readAsDataURL(blob);
    });
})()"""


def save(picture, path):
    head, _, data = picture.partition(",")
    assert head == "data:image/png;base64", head or picture
    path.write_bytes(base64.b64decode(data))


def moments_of(file, language):
    lines = (line.split() for line in file.read_text().splitlines() if line and not line.startswith("#"))
    times = [words[1] for words in lines if words[0] == language]
    return sorted(times, key=lambda time: -1 if time == "loading" else float(time))


def main():
    site, moments, output = (pathlib.Path(argument) for argument in sys.argv[1:])
    shutil.rmtree(output, ignore_errors=True)
    server = Server(site)
    for language in ("en", "de"):
        folder = output / language
        folder.mkdir(parents=True)
        browser = Browser()
        browser.open(server.address + "?clock=frames")
        browser.wait_for_state("ready")
        browser.click(language)
        browser.wait("skav.music && skav.music.playing && !skav.drawing")
        next_frame = 0
        for time in moments_of(moments, language):
            if time == "loading":
                save(browser.js_async(DRAW % []), folder / "loading.png")
                continue
            moment = round(float(time) * 1000)
            last = range(max(next_frame, moment - 2 * FRAME), moment + FRAME, FRAME)
            browser.resize(TINY)
            browser.js_async(DRAW % [*range(next_frame, last[0], FRAME)])
            browser.resize(FULL)
            save(browser.js_async(DRAW % [*last]), folder / f"{moment / 1000:07.3f}.png")
            next_frame = moment + FRAME
        errors = browser.errors()
        browser.close()
        if errors:
            sys.exit(f"the console's errors: {errors}")


main()
