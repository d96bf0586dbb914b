"""The page in Chromium: start, show, end, and what can go wrong.

Usage: SITE=FOLDER python3 page_test.py [-v] [PageTest.test_NAME]
"""

import os
import pathlib
import platform
import signal
import unittest

from selenium.webdriver.common.keys import Keys

from browser import Browser, Server

SITE = os.environ["SITE"]


class PageTest(unittest.TestCase):
    def setUp(self):
        self.server = Server(SITE)
        self.addCleanup(self.server.close)

    def browser(self, *arguments, **more):
        browser = Browser(*arguments, **more)
        self.addCleanup(browser.close)
        return browser

    def started(self, address="", *arguments, **more):
        """A browser in which the show plays."""
        browser = self.browser(*arguments, **more)
        browser.open(self.server.address + address)
        browser.wait_for_state("ready")
        browser.click("en")
        browser.wait_for_state("playing")
        browser.wait("skav.music.playing > 0 && skav.music.last > 0")
        return browser

    def loaded(self, **more):
        """A browser in which the show is loaded and draws frames when it is told to."""
        browser = self.browser(**more)
        browser.open(self.server.address + "?clock=frames")
        browser.wait_for_state("ready")
        browser.click("en")
        browser.wait("skav.music && skav.music.playing && !skav.drawing")
        return browser

    def assert_plays(self, browser):
        """The position moves on, and pictures follow it."""
        position = browser.js("skav.music.last")
        browser.wait(f"skav.music.last > {position} + 300 && skav.request.position > {position} + 300")

    def colours(self, browser):
        """How many different colours the canvas shows, of a grid of its pixels."""
        return browser.js_async("""
            createImageBitmap(skav.performer.canvas, {resizeWidth: 64, resizeHeight: 48}).then((bitmap) => {
                const canvas = new OffscreenCanvas(64, 48).getContext("2d");
                canvas.drawImage(bitmap, 0, 0);
                return new Set(new Uint32Array(canvas.getImageData(0, 0, 64, 48).data.buffer)).size;
            })""")

    # --- Start

    def test_the_browsers_language_is_chosen(self):
        for language, lead in (("de", "Echtzeit"), ("en-US", "real-time")):
            browser = self.browser(language=language)
            browser.open(self.server.address)
            browser.wait_for_state("ready")
            self.assertIn(lead, browser.text("lead"))

    def test_the_addresss_language_is_chosen(self):
        browser = self.browser()
        browser.open(self.server.address + "#de")
        browser.wait_for_state("ready")
        self.assertIn("Blitzlicht", browser.text("warning"))
        self.assertEqual(browser.driver.find_element("css selector", "button.chosen").text, "Deutsch")
        browser.driver.execute_script("location.hash = 'en'")
        browser.wait("document.documentElement.lang === 'en'")
        self.assertIn("flashing", browser.text("warning"))

    def test_a_click_starts_in_either_language(self):
        browser = self.browser()
        for name, code in (("de", "de"), ("en", "en")):
            browser.open(self.server.address)
            browser.driver.refresh()
            browser.wait_for_state("ready")
            browser.click(name)
            browser.wait_for_state("playing")
            self.assertEqual(browser.js("skav.language"), code)
            browser.wait("skav.music.playing === 1")
            self.assert_plays(browser)
            self.assertEqual(browser.errors(), [])

    def test_a_key_starts_in_either_language(self):
        browser = self.browser()
        for key, code in (("d", "de"), ("e", "en"), (Keys.ENTER, "de")):
            browser.open(self.server.address + "#de")
            browser.driver.refresh()
            browser.wait_for_state("ready")
            browser.press(key)
            browser.wait_for_state("playing")
            self.assertEqual(browser.js("skav.language"), code)
            browser.wait("skav.music.playing === 1")
            self.assert_plays(browser)

    def test_a_click_while_it_loads_starts_when_it_has_loaded(self):
        browser = self.browser(before="""
            const fetchNow = window.fetch;
            window.fetch = async (name) => {
                if (name === "zev.mp3") await new Promise((resolve) => (window.letIn = resolve));
                return fetchNow(name);
            };""")
        browser.open(self.server.address)
        browser.wait("window.letIn && document.getElementById('progress').value > 2e6")
        browser.click("en")
        browser.wait_for_state("starting")
        self.assertLess(browser.js("document.getElementById('progress').position"), 1)
        browser.js("letIn()")
        browser.wait_for_state("playing")
        browser.wait("skav.music.playing === 1")
        self.assert_plays(browser)

    # --- The show

    def test_the_loading_picture_is_seen_while_the_show_loads(self):
        browser = self.loaded(before="""
            // When pictures arrive before the first frame is asked for.
            window.arrivals = [];
            const show = ImageBitmapRenderingContext.prototype.transferFromImageBitmap;
            ImageBitmapRenderingContext.prototype.transferFromImageBitmap = function (bitmap) {
                if (skav.drawing && !skav.music.playing) arrivals.push(performance.now());
                show.call(this, bitmap);
            };""")
        arrivals = browser.js("arrivals")
        self.assertGreaterEqual(len(arrivals), 2)
        # Not all at once, when loading is done. It takes some tenths of a second on the fastest machine.
        self.assertGreater(arrivals[-1] - arrivals[0], 50)
        self.assertGreater(self.colours(browser), 10)

    def test_the_position_never_falls_and_the_switch_comes_in_time(self):
        browser = self.started("?t=70")
        browser.driver.execute_script("""
            window.readings = [];
            const read = () => {
                if (skav.state !== "playing") return;
                const { name, last } = skav.music;
                readings.push([name, last]);
                requestAnimationFrame(read);
            };
            read();
            const play = skav.music.play;
            skav.music.play = function (...piece) {
                window.switchedAt = skav.request.position; // of the frame that switches
                play.apply(this, piece);
            };""")
        browser.wait("skav.music.name === 'zev_voc.mp3' && skav.music.last > 2000")
        readings = browser.js("readings")
        # How late the switch is, depends on how fast the machine draws; it is never early.
        names = [name for name, position in readings]
        self.assertEqual(names, sorted(names), "one piece after the other")
        for name in ("zev.mp3", "zev_voc.mp3"):
            positions = [position for piece, position in readings if piece == name]
            self.assertGreater(len(positions), 1)
            self.assertEqual(positions, sorted(positions))
            if name == "zev.mp3":
                self.assertGreaterEqual(browser.js("switchedAt"), 74000)
            else:
                self.assertLess(positions[0], 2000, "the vocal piece plays from its start")

    def test_the_position_waits_while_the_tab_is_hidden(self):
        browser = self.started("?t=20")
        browser.driver.minimize_window()
        browser.wait("document.hidden && skav.music.paused")
        position = browser.js("skav.music.last")
        begin = browser.js("performance.now()")
        browser.wait(f"performance.now() > {begin} + 1500")
        self.assertEqual(browser.js("skav.music.last"), position)
        browser.driver.execute_script("""
            document.addEventListener("visibilitychange", () => (window.resumed = skav.music.last));""")
        browser.driver.set_window_rect(0, 0, 1024, 768)
        browser.wait("!document.hidden && !skav.music.paused")
        self.assertEqual(browser.js("window.resumed"), position)
        self.assert_plays(browser)

    def test_a_show_that_starts_in_a_hidden_tab_waits_there(self):
        browser = self.browser()
        browser.open(self.server.address + "?t=20")
        browser.wait_for_state("ready")
        browser.driver.minimize_window()
        browser.wait("document.hidden")
        browser.driver.execute_script("skav.start()")
        browser.wait("skav.music && skav.music.playing === 1")
        begin = browser.js("performance.now()")
        browser.wait(f"performance.now() > {begin} + 500")
        self.assertEqual(browser.js("skav.music.last"), 20000)
        self.assertEqual(browser.js("skav.music.source"), None, "nothing is heard")
        browser.driver.set_window_rect(0, 0, 1024, 768)
        browser.wait("!document.hidden && !skav.music.paused")
        self.assert_plays(browser)

    def test_the_show_ends_and_starts_again(self):
        browser = self.started("?t=160")
        browser.wait_for_state("ended")
        self.assertTrue(browser.text("message"))
        self.assertEqual(browser.errors(), [])
        browser.driver.execute_script("skav.begin = 0")
        browser.click("again")
        browser.wait_for_state("playing")
        browser.wait("skav.music.playing === 1")
        self.assert_plays(browser)
        self.assertLess(browser.js("skav.music.last"), 60000)

    def test_the_picture_fits_the_window_at_its_own_pixels(self):
        browser = self.loaded(size=(900, 500))
        for width, height, ratio, picture in (
            (900, 500, 1, (667, 500)),
            (400, 800, 2, (800, 600)),
            (1100, 800, 4, (4096, 3072)),
        ):
            browser.resize((width, height), ratio)
            browser.js_async("skav.frame(14000)")
            drawn = browser.js_async("""
                new Promise((resolve) => skav.performer.canvas.toBlob(resolve)).then(createImageBitmap)
                    .then((bitmap) => [bitmap.width, bitmap.height])""")
            self.assertEqual(tuple(drawn), picture)
            box = browser.js("skav.performer.canvas.getBoundingClientRect()")
            self.assertAlmostEqual(box["width"] / box["height"], 4 / 3, places=2)
            self.assertAlmostEqual(box["left"], width - box["right"], delta=1)
            self.assertAlmostEqual(box["top"], height - box["bottom"], delta=1)
            self.assertLessEqual(box["width"], width + 1)
            self.assertLessEqual(box["height"], height + 1)

    def test_the_heap_does_not_grow(self):
        browser = self.loaded(size=(64, 48))  # small pictures are drawn sooner

        def heap_after(first, last):
            for time in range(first, last, 100):
                browser.js_async(f"skav.frame({time})")
            browser.driver.execute_cdp_cmd("HeapProfiler.collectGarbage", {})
            return browser.driver.execute_cdp_cmd("Runtime.getHeapUsage", {})["usedSize"]

        early = heap_after(10000, 14000)
        late = heap_after(14000, 26000)
        self.assertLess(late - early, 300_000)

    # --- What can go wrong

    def test_lost_graphics_are_said_and_the_show_starts_again(self):
        browser = self.started("?t=20")
        os.kill(browser.graphics_process(), signal.SIGKILL)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("graphics", browser.text("message"))
        browser.click("again")
        browser.wait_for_state("playing")
        browser.wait("skav.music.playing === 1")
        self.assert_plays(browser)

    def test_a_missing_file_is_named(self):
        for file in ("zev_voc.mp3", "skav.wasm", "Vera.ttf"):
            self.server.broken = {file: None}
            browser = self.browser()
            browser.open(self.server.address)
            browser.wait("document.body.dataset.state === 'failed'")
            self.assertIn(file, browser.text("message"))
            self.assertEqual(browser.text("en"), "", "nothing can be started")
            browser.close()

    def test_a_file_that_breaks_off_is_named(self):
        whole = pathlib.Path(SITE, "zev.mp3").read_bytes()
        self.server.broken = {"zev.mp3": whole[: len(whole) // 2]}
        browser = self.browser()
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("zev.mp3", browser.text("message"))

    def test_a_program_that_is_none_is_named(self):
        size = pathlib.Path(SITE, "skav.wasm").stat().st_size
        self.server.broken = {"skav.wasm": bytes(size)}
        browser = self.browser()
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("skav.wasm", browser.text("message"))
        self.assertEqual(browser.text("again"), "", "nothing can be started")

    def test_music_that_is_none_is_named(self):
        size = pathlib.Path(SITE, "zev.mp3").stat().st_size
        self.server.broken = {"zev.mp3": bytes(size)}
        browser = self.browser()
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("decode", browser.text("message"))
        self.assertIn("zev.mp3", browser.text("message"))

    def test_without_a_sound_output_the_show_plays_silently(self):
        # An output that never starts, as without a device.
        browser = self.started("?t=20", before="AudioContext.prototype.resume = () => new Promise(() => {});"
                               "const Real = AudioContext;"
                               "window.AudioContext = class extends Real {"
                               " constructor() { super(); super.suspend(); }"
                               " get currentTime() { return 0; } };")
        browser.wait("document.getElementById('note').textContent")
        self.assertIn("No sound", browser.js("document.getElementById('note').textContent"))
        self.assert_plays(browser)

    def test_a_browser_that_blocks_the_sound_plays_silently_until_a_click(self):
        browser = self.browser("--autoplay-policy=document-user-activation-required")
        browser.open(self.server.address + "?t=20")
        browser.wait("window.skav && skav.state === 'ready'", browser.peek)
        browser.peek("skav.start()")
        browser.wait("document.getElementById('note').textContent", browser.peek)
        self.assertEqual(browser.peek("skav.context.state"), "suspended")
        self.assertIn("No sound", browser.peek("document.getElementById('note').textContent"))
        position = browser.peek("skav.music.last")
        browser.wait(f"skav.music.last > {position} + 300", browser.peek)
        browser.click("stage")
        browser.wait("skav.music.heard")
        self.assert_plays(browser)

    def test_without_webgl_2_that_is_said(self):
        browser = self.browser("--use-gl=disabled")
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("WebGL 2", browser.text("message"))

    def test_where_a_worker_cannot_draw_the_page_does(self):
        browser = self.started("?t=14", before="delete window.OffscreenCanvas;")
        self.assert_plays(browser)
        self.assertEqual(browser.errors(), [])
        self.assertTrue(browser.js("skav.performer.canvas.getContext('webgl2') !== null"))

    def test_an_old_browser_is_told(self):
        browser = self.browser(before="delete window.AudioContext;")
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("too old", browser.text("message"))

    @unittest.skipUnless(platform.machine() == "x86_64", "V8 has this switch for x86 only")
    def test_a_browser_without_vector_instructions_is_told(self):
        browser = self.browser("--js-flags=--no-enable-sse4-1")
        browser.open(self.server.address)
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("too old", browser.text("message"))

    def test_a_browser_that_does_not_understand_the_script_is_told(self):
        self.server.broken = {"skav.js": b"this is no script ("}
        browser = self.browser()
        browser.open(self.server.address)
        self.assertIn("2023", browser.text("message"))

    def test_from_a_file_the_page_says_how_to_serve_it(self):
        browser = self.browser()
        browser.open(pathlib.Path(SITE, "index.html").as_uri())
        browser.wait("document.body.dataset.state === 'failed'")
        self.assertIn("python3 -m http.server", browser.text("message"))


if __name__ == "__main__":
    unittest.main()
