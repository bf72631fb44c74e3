"""A page in headless Chromium, driven through its debugging pipe: no port, no package of Python."""

import base64
import json
import os
import subprocess
import tempfile
import zlib

COMMAND = ["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
           "--hide-scrollbars", "--no-first-run", "--disable-extensions", "--disable-sync",
           "--disable-background-networking", "--disable-component-update", "--remote-debugging-pipe"]


class Browser:
    """Starts Chromium with a profile of its own; the end of the `with` block ends it."""

    def __enter__(self):
        self.profile = tempfile.TemporaryDirectory(prefix="wattleaf-chromium-", ignore_cleanup_errors=True)
        to_browser, self.commands = os.pipe()
        self.messages, from_browser = os.pipe()
        # The browser reads file descriptor 3 and writes 4; the shell puts the pipes there.
        script = f'exec "$@" 3<&{to_browser} 4>&{from_browser}'
        self.process = subprocess.Popen(
            ["bash", "-c", script, "browser", *COMMAND, f"--user-data-dir={self.profile.name}", "about:blank"],
            pass_fds=(to_browser, from_browser), stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.buffer, self.number, self.events = b"", 0, []
        return self

    def __exit__(self, *_):
        try:
            self.call("Browser.close")
        except (OSError, RuntimeError):
            self.process.terminate()
        self.process.wait(timeout=30)
        os.close(self.commands)
        os.close(self.messages)
        self.profile.cleanup()

    def call(self, method, session=None, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        while True:
            answer = self.read()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self.events.append(answer)

    def read(self):
        while b"\0" not in self.buffer:
            data = os.read(self.messages, 1 << 20)
            if not data:
                raise RuntimeError("Chromium has ended")
            self.buffer += data
        message, _, self.buffer = self.buffer.partition(b"\0")
        return json.loads(message)


class Page:
    """One page at one width, light or dark. `requests` has the address of everything that it asked for."""

    def __init__(self, browser, url, width, dark=False):
        self.browser = browser
        target = browser.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = browser.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Network", "Log", "Runtime"):
            self.call(f"{domain}.enable")
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=width < 600)
        scheme = [{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]
        self.call("Emulation.setEmulatedMedia", features=scheme)
        self.call("Page.navigate", url=url)
        self.wait_for("Page.loadEventFired")

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def own_events(self, method):
        return [event["params"] for event in self.browser.events
                if event.get("sessionId") == self.session and event.get("method") == method]

    def wait_for(self, method):
        while not self.own_events(method):
            self.browser.events.append(self.browser.read())

    def requests(self):
        return [event["request"]["url"] for event in self.own_events("Network.requestWillBeSent")]

    def complaints(self):
        """What the browser's console says, such as a refusal by the page's security policy."""
        return [event["entry"]["text"] for event in self.own_events("Log.entryAdded")]

    def evaluate(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"])
        return result["result"].get("value")

    def screenshot(self, path, height=None):
        """The first `height` pixels of the page, or all of it."""
        size = self.call("Page.getLayoutMetrics")["cssContentSize"]
        clip = {"x": 0, "y": 0, "width": size["width"], "height": height or size["height"], "scale": 1}
        image = self.call("Page.captureScreenshot", format="png", captureBeyondViewport=True, clip=clip)
        with open(path, "wb") as file:
            file.write(base64.b64decode(image["data"]))

    def print_to(self, path):
        document = self.call("Page.printToPDF", printBackground=False, preferCSSPageSize=True)
        with open(path, "wb") as file:
            file.write(base64.b64decode(document["data"]))


def shrink_png(path):
    """Compresses the picture's rows as well as zlib can; the browser compresses them fast."""
    data = path.read_bytes()
    chunks, at = [], 8
    while at < len(data):
        length = int.from_bytes(data[at:at + 4], "big")
        chunks.append((data[at + 4:at + 8], data[at + 8:at + 8 + length]))
        at += 12 + length
    rows = zlib.decompress(b"".join(body for name, body in chunks if name == b"IDAT"))
    header = next(body for name, body in chunks if name == b"IHDR")
    small = b"".join(chunk(*part) for part in (
        (b"IHDR", header), (b"IDAT", zlib.compress(rows, 9)), (b"IEND", b"")))
    path.write_bytes(data[:8] + small)


def chunk(name, body):
    return len(body).to_bytes(4, "big") + name + body + zlib.crc32(name + body).to_bytes(4, "big")
