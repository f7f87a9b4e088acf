# SPDX-License-Identifier: Apache-2.0
"""A headless Chromium by its real driver, for pages that stand in a file."""
import base64
import json
import pathlib
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service


class Browser:
    def __init__(self):
        self._profile = tempfile.TemporaryDirectory(prefix="lk-", ignore_cleanup_errors=True)
        options = Options()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                         "--hide-scrollbars", "--user-data-dir=" + self._profile.name):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.driver.set_script_timeout(60)

    def close(self):
        self.driver.quit()
        self._profile.cleanup()

    def open(self, page):
        """Opens the page; returns what it wrote to the console and what it asked the network for."""
        address = pathlib.Path(page).absolute().as_uri()
        self.driver.get_log("performance")
        self.driver.get_log("browser")
        self.driver.get(address)
        self.settle()
        requests = [message["params"]["request"]["url"] for message in
                    (json.loads(entry["message"])["message"] for entry in self.driver.get_log("performance"))
                    if message["method"] == "Network.requestWillBeSent"]
        console = [entry["message"] for entry in self.driver.get_log("browser")]
        return console, [url for url in requests if url != address and not url.startswith("data:")]

    def settle(self):
        """Waits until layout and charts have come to rest: two frames, and what a resize has put off."""
        self.driver.execute_async_script("""const done = arguments[0];
            requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done, 200)));""")

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def look(self, width=1200, dark=False, media=""):
        command = self.driver.execute_cdp_cmd
        command("Emulation.setEmulatedMedia", {"media": media, "features": [
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})
        command("Emulation.setDeviceMetricsOverride", {"width": width, "height": 900, "deviceScaleFactor": 1,
                                                       "mobile": width < 600})
        self.settle()

    def screenshot(self, file, part=0, height=1500):
        whole = self.run("return document.documentElement.scrollHeight")
        width = self.run("return document.documentElement.clientWidth")
        clip = {"x": 0, "y": part * height, "width": width, "height": min(height, whole - part * height), "scale": 1}
        for _ in range(2):  # the first picture beyond the window has no canvases
            image = self.driver.execute_cdp_cmd("Page.captureScreenshot", {"captureBeyondViewport": True, "clip": clip})
        pathlib.Path(file).write_bytes(base64.b64decode(image["data"]))

    def painted(self, canvas_id):
        """How many pixels of a canvas are not transparent, and how many colours they have."""
        return self.run("""const canvas = document.getElementById(arguments[0]);
            const data = new Uint32Array(canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data.buffer);
            const colours = new Set(); let painted = 0;
            for (const pixel of data) if (pixel >>> 24) { ++painted; colours.add(pixel); }
            return [painted, colours.size];""", canvas_id)
