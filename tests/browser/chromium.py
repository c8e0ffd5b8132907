# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Debian's Chromium, with the extension as it is built. Its automation only opens pages and reads
them; it is spoken to over a pair of pipes, in JSON between zero bytes."""

import contextlib
import fcntl
import json
import os
import select
import subprocess
import time

from session import end
from waiting import PATIENCE, wait_until

_NAME = "Postal Scale"
_INPUT, _OUTPUT = 3, 4  # where the browser expects its pipes


class Chromium:
    name = "chromium"

    def __init__(self, session, site, build, home=None):
        self._session = session
        self._site = site
        self._build = build
        self.home = home or session.new_folder("chromium")
        self.environment = session.environment | {
            "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home / "settings")}
        self._start()

    def kill(self):
        """All at once, as in a crash."""
        self._process.kill()
        self._process.wait()
        self._close_pipes()

    def close(self):
        end(self._process)
        self._close_pipes()

    def restarted(self):
        return Chromium(self._session, self._site, self._build, self.home)

    def first_page(self):
        return ChromiumPage(self, wait_until(self._page_targets, "a tab")[0])

    def new_page(self, url, kind):
        """@param kind "tab" or "window" """
        answer = self.call("Target.createTarget", url=url, newWindow=kind == "window")
        page = ChromiumPage(self, answer["targetId"])
        page.wait_for_load(url)
        return page

    def new_private_page(self, url):
        before = set(self._page_targets())
        self._session.output_of("xdotool", "key", "ctrl+shift+n")
        opened = wait_until(lambda: set(self._page_targets()) - before, "a private window")
        page = ChromiumPage(self, opened.pop())
        page.go(url)
        return page

    def allow_private_windows(self):
        """By its own page, as the user would. What was not installed from a store is off after that,
        until the browser is started anew."""
        page = self.new_page("chrome://extensions/", "tab")
        page.evaluate(f"""(async () => {{
            const all = await chrome.developerPrivate.getExtensionsInfo();
            const {{id}} = all.find(({{name}}) => name === "{_NAME}");
            await chrome.developerPrivate.updateExtensionConfiguration(
                {{extensionId: id, incognitoAccess: true}});
        }})()""")
        wait_until(lambda: not self._workers(), "the extension switched off")
        self.close()
        return self.restarted()

    def click_and_allow(self, page, element):
        self.act_and_allow(lambda: page.click(element))

    def act_and_allow(self, act, before_allowing=lambda: None):
        """Then the browser asks, over its dimmed window; the first button there denies."""
        before = sum(self.picture())

        def is_asking():
            return sum(self.picture()) < 0.7 * before

        def allow():
            # Longer than the half second in which Chromium takes a key to be meant for what was
            # there before; each key makes it count anew.
            time.sleep(1)
            if is_asking():
                self._session.output_of("xdotool", "key", "Return")
            return not is_asking()

        act()
        wait_until(is_asking, "the browser's dialog")
        time.sleep(1)
        before_allowing()
        self._session.output_of("xdotool", "key", "Tab")
        wait_until(allow, "the browser's dialog closed")

    def act_and_refuse(self, act):
        self.act_and_allow(act, before_allowing=lambda: self._session.output_of(
            "xdotool", "key", "Escape"))

    def end_worker(self):
        """The extension's, as the browser does by itself when it has nothing to do."""
        worker = wait_until(self._workers, "the extension")[0]["targetId"]
        self.call("Target.closeTarget", targetId=worker)
        wait_until(lambda: all(each["targetId"] != worker for each in self._workers()),
                   "the worker's end")

    def picture(self):
        """The window in front, as bytes of its pixels."""
        window = self._session.output_of("xdotool", "getwindowfocus").strip()
        return subprocess.run(["import", "-window", window, "rgb:-"], check=True,
                              env=self._session.environment, capture_output=True).stdout

    def text_in_closed_root(self, page, tag):
        """Of the first element of that name; None where there is none. No page can look there."""
        return page.text_in_closed_root(tag)

    def permissions_page(self):
        """What the browser itself says of the extension."""
        worker = wait_until(self._workers, "the extension")[0]
        name = worker["url"].split("/")[2]
        page = self.new_page(f"chrome://extensions/?id={name}", "tab")
        wait_until(lambda: page.evaluate("document.querySelector('extensions-manager').shadowRoot"
                                         ".querySelector('extensions-detail-view') !== null"),
                   "the extension's page")
        return page

    def options_page(self):
        worker = wait_until(self._workers, "the extension")[0]
        return self.new_page(worker["url"].rsplit("/", 1)[0] + "/options.html", "tab")

    def call(self, method, session=None, **parameters):
        number = self.post(method, session, **parameters)
        while True:
            answer = self._receive()
            if answer.get("id") != number:
                continue
            if "error" in answer:
                raise RuntimeError(f"{method}: {answer['error']['message']}")
            return answer["result"]

    def post(self, method, session=None, **parameters):
        self._last_call += 1
        message = {"id": self._last_call, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self._to_browser, json.dumps(message).encode("utf-8") + b"\0")
        return self._last_call

    def _start(self):
        self._last_call = 0
        self._received = b""
        browser_input, self._to_browser = os.pipe()
        self._from_browser, browser_output = os.pipe()
        inner_input, inner_output = map(_moved_up, (browser_input, browser_output))
        flags = [
            "--remote-debugging-pipe", f"--load-extension={self._build / 'browser' / 'chromium'}",
            f"--proxy-server=127.0.0.1:{self._site.port}", "--ignore-certificate-errors",
            "--no-first-run", "--no-default-browser-check", "--disable-background-networking",
            "--disable-component-update", "--password-store=basic", "--disable-gpu",
            "--window-size=700,600",
        ]
        if os.geteuid() == 0:
            flags.append("--no-sandbox")
        # The shell in between exists to place the pipes; it becomes the browser.
        redirections = f"{_INPUT}<&{inner_input} {_OUTPUT}>&{inner_output}"
        self._process = self._session.spawn(
            ["bash", "-c", f'exec "$@" {redirections}', "chromium", "chromium", *flags,
             "about:blank"],
            self.environment, pass_fds=[inner_input, inner_output],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(inner_input)
        os.close(inner_output)
        wait_until(self._page_targets, "a tab")

    def _close_pipes(self):
        os.close(self._to_browser)
        os.close(self._from_browser)

    def _targets(self):
        return self.call("Target.getTargets", filter=[{}])["targetInfos"]

    def _workers(self):
        return [each for each in self._targets() if each["type"] == "service_worker"]

    def _page_targets(self):
        return [each["targetId"] for each in self._targets() if each["type"] == "page"]

    def _receive(self):
        deadline = time.monotonic() + PATIENCE
        while b"\0" not in self._received:
            ready, _, _ = select.select([self._from_browser], [], [],
                                        max(0, deadline - time.monotonic()))
            if not ready:
                raise AssertionError("the browser does not answer")
            data = os.read(self._from_browser, 65536)
            if not data:
                raise RuntimeError("the browser is gone")
            self._received += data
        message, self._received = self._received.split(b"\0", 1)
        return json.loads(message)


def _moved_up(descriptor):
    """Out of the way of the two numbers that the browser expects."""
    moved = fcntl.fcntl(descriptor, fcntl.F_DUPFD, 10)
    os.close(descriptor)
    return moved


def _inner(node):
    return [*node.get("children", ()), *node.get("shadowRoots", ())]


def _first(node, is_wanted):
    if is_wanted(node):
        return node
    return next(filter(None, (_first(each, is_wanted) for each in _inner(node))), None)


def _texts(node):
    yield node["nodeValue"]
    for each in _inner(node):
        yield from _texts(each)


class ChromiumPage:
    def __init__(self, browser, target):
        self._browser = browser
        self._target = target
        self._session = browser.call("Target.attachToTarget", targetId=target,
                                     flatten=True)["sessionId"]

    def go(self, url):
        self._browser.call("Page.navigate", self._session, url=url)
        self.wait_for_load(url)

    def wait_for_load(self, url):
        wait_until(lambda: self.evaluate("document.readyState === 'complete' && location.href")
                   == url, lambda: f"{url} loaded; {self.evaluate('location.href')} is there")

    def evaluate(self, script):
        answer = self._browser.call("Runtime.evaluate", self._session, expression=script,
                                    returnByValue=True, awaitPromise=True)
        return answer["result"].get("value")

    def text_in_closed_root(self, tag):
        root = self._browser.call("DOM.getDocument", self._session, depth=-1, pierce=True)["root"]
        found = _first(root, lambda node: node["localName"] == tag)
        return found and "".join(_texts(found))

    def click(self, element):
        """As the person's own mouse would. @param element its id"""
        x, y = self.evaluate("""((element) => {
            element.scrollIntoView({block: "center"});
            const {x, y, width, height} = element.getBoundingClientRect();
            return [x + width / 2, y + height / 2];
        })(document.getElementById('%s'))""" % element)
        for kind in ("mousePressed", "mouseReleased"):
            self._browser.call("Input.dispatchMouseEvent", self._session, type=kind, x=x, y=y,
                               button="left", clickCount=1)

    def start(self, script):
        """Does not wait for its end."""
        self._browser.post("Runtime.evaluate", self._session, expression=script)

    @contextlib.contextmanager
    def held_up(self, site):
        """It waits for the site's answer, and does nothing else meanwhile."""
        site.hold_slow_pages()
        try:
            self.start("""const request = new XMLHttpRequest();
                request.open("GET", "?slow", false);
                request.send();""")
            assert site.wait_for_slow_page(PATIENCE)
            yield
        finally:
            site.answer_slow_pages()

    def close(self):
        """Nothing happens if it is closed already."""
        if self._target:
            self._browser.call("Target.closeTarget", targetId=self._target)
        self._target = None
