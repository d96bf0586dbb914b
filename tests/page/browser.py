"""The page's folder on a server of the test's own, and Chromium that looks at it."""

import functools
import http.server
import os
import pathlib
import tempfile
import threading

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.support.ui import WebDriverWait

os.environ["no_proxy"] = "127.0.0.1,localhost"  # nothing here leaves this machine

PATIENCE = 120  # seconds for whatever is waited for: it decides only how long a failure takes


class Server:
    """Serves a folder on the loopback interface. Files in `broken` have that content instead; None: missing."""

    def __init__(self, folder):
        self.broken = {}
        server = self

        class Handler(http.server.SimpleHTTPRequestHandler):
            def do_GET(self):
                name = self.path.lstrip("/").partition("?")[0]
                if name not in server.broken:
                    return super().do_GET()
                content = server.broken[name]
                if content is None:
                    return self.send_error(404)
                self.send_response(200)
                self.send_header("Content-Length", str(len(content)))
                self.end_headers()
                self.wfile.write(content)

            def log_message(self, *arguments):
                pass

        handler = functools.partial(Handler, directory=folder)
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.address = f"http://127.0.0.1:{self.server.server_port}/"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()


class Browser:
    """Chromium without a window, drawing in software. `before` is a script that runs before the page's own."""

    def __init__(self, *arguments, before=None, size=(1024, 768), language="en-US"):
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for argument in (
            "--headless=new",
            "--use-angle=swiftshader",
            "--enable-unsafe-swiftshader",
            f"--user-data-dir={self.folder.name}",
            f"--window-size={size[0]},{size[1]}",
            "--no-sandbox",  # which not every machine has; it opens nothing but the page
            "--disable-dev-shm-usage",
            *arguments,
        ):
            options.add_argument(argument)
        options.add_experimental_option("prefs", {"intl.accept_languages": language})
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        self.driver.set_script_timeout(PATIENCE)
        self.resize(size)
        if before:
            self.driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": before})

    def close(self):
        self.driver.quit()
        self.folder.cleanup()

    def graphics_process(self):
        """The id of this browser's process that draws."""
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                arguments = (process / "cmdline").read_text()
            except OSError:
                continue  # it has just ended
            if "--type=gpu-process" in arguments and self.folder.name in arguments:
                return int(process.name)
        raise AssertionError("no process draws")

    def open(self, address):
        self.driver.get(address)

    def resize(self, size, ratio=1):
        """Gives the page this size in CSS pixels, of `ratio` device pixels each."""
        self.driver.execute_cdp_cmd(
            "Emulation.setDeviceMetricsOverride",
            {"width": size[0], "height": size[1], "deviceScaleFactor": ratio, "mobile": False},
        )
        self.wait(f"innerWidth === {size[0]} && innerHeight === {size[1]}")

    def js(self, expression):
        """The value of an expression in the page."""
        return self.driver.execute_script(f"return {expression};")

    def peek(self, expression):
        """The same, but not as if the user had done it: a browser lets only a user start sound."""
        answer = self.driver.execute_cdp_cmd(
            "Runtime.evaluate", {"expression": expression, "returnByValue": True, "userGesture": False}
        )
        return answer["result"].get("value")

    def js_async(self, promise):
        """What a promise in the page resolves to."""
        return self.driver.execute_async_script(
            f"const done = arguments[arguments.length - 1]; ({promise}).then(done, (e) => done('rejected: ' + e));"
        )

    def wait(self, condition, look=None):
        """Waits until a condition holds in the page, and returns its value. It looks by js, or by peek."""

        def value(driver):
            return (look or self.js)(condition)

        try:
            return WebDriverWait(self.driver, PATIENCE, poll_frequency=0.05).until(value)
        except Exception as error:
            raise AssertionError(f"never: {condition}; the page is {self.js('document.body.innerText')!r}; "
                                 f"console: {self.driver.get_log('browser')}") from error

    def wait_for_state(self, state):
        self.wait(f"document.body.dataset.state === '{state}' || "
                  f"(document.body.dataset.state === 'failed' && 'failed')")
        found = self.js("document.body.dataset.state")
        if found != state:
            raise AssertionError(f"{found} instead of {state}: {self.text('message')!r}; "
                                 f"console: {self.driver.get_log('browser')}")

    def text(self, name):
        """What is to be read in an element; empty when it is hidden."""
        return self.driver.find_element("id", name).text

    def click(self, name):
        self.driver.find_element("id", name).click()

    def press(self, key):
        ActionChains(self.driver).send_keys(key).perform()

    def errors(self):
        """The console's errors."""
        return [entry["message"] for entry in self.driver.get_log("browser") if entry["level"] == "SEVERE"]
