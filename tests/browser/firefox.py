# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Debian's Firefox, with the extension as it is built. Its automation (Marionette: JSON after its
length, over TCP) only opens pages and reads them."""

import contextlib
import json
import os
import signal
import socket
import subprocess
import time

from session import end
from waiting import PATIENCE, wait_until

_EXTENSION = "browser-link@postal-scale"


class Firefox:
    name = "firefox"

    def __init__(self, session, site, build, home=None):
        self._session = session
        self._site = site
        self._build = build
        self.home = home or session.new_folder("firefox")
        self.environment = session.environment | {
            "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home / "settings")}
        self._start()

    def kill(self):
        """All at once, as in a crash."""
        self._process.kill()
        self._process.wait()
        self._connection.close()

    def close(self):
        self._connection.close()
        end(self._process)

    def restarted(self):
        return Firefox(self._session, self._site, self._build, self.home)

    def first_page(self):
        return FirefoxPage(self, self.call("WebDriver:GetWindowHandle")["value"])

    def new_page(self, url, kind):
        """@param kind "tab" or "window" """
        handle = self.call("WebDriver:NewWindow", type=kind, focus=True)["handle"]
        page = FirefoxPage(self, handle)
        page.go(url)
        return page

    def new_private_page(self, url):
        handle = self.call("WebDriver:NewWindow", type="window", focus=True, private=True)["handle"]
        page = FirefoxPage(self, handle)
        page.go(url)
        return page

    def allow_private_windows(self):
        """What the button of about:addons does. It counts at once."""
        self._evaluate_in_browser(f"""(async () => {{
            const load = (name) => ChromeUtils.importESModule(
                `resource://gre/modules/${{name}}.sys.mjs`)[name];
            await load("ExtensionPermissions").add(
                "{_EXTENSION}", {{permissions: ["internal:privateBrowsingAllowed"], origins: []}});
            await (await load("AddonManager").getAddonByID("{_EXTENSION}")).reload();
        }})()""")
        return self

    def click_and_allow(self, page, element):
        self.act_and_allow(lambda: page.click(element))

    def act_and_allow(self, act, before_allowing=lambda: None):
        """Then the browser asks, in a panel that takes no click in its first moments; one that comes
        too early makes it count anew."""
        def button():
            return self._evaluate_in_browser("""(({state, firstElementChild: panel}) => {
                if (state !== "open" || !panel?.button)
                    return null;
                const {screenX, screenY} = panel.button;
                const {width, height} = panel.button.getBoundingClientRect();
                return [screenX + width / 2, screenY + height / 2].map(Math.round);
            })(PopupNotifications.panel)""")

        def allow():
            time.sleep(1)
            place = button()
            if place:
                self._session.pointer_clicks(place)
            return button() is None

        act()
        wait_until(button, "the browser's dialog")
        time.sleep(1)
        before_allowing()
        wait_until(allow, "the browser's dialog closed")

    def act_and_refuse(self, act):
        self.act_and_allow(act, before_allowing=lambda: self._evaluate_in_browser(
            "PopupNotifications.panel.firstElementChild.secondaryButton.click()"))

    def text_in_closed_root(self, page, tag):
        """Of the first element of that name; None where there is none. No page can look there."""
        return page.evaluate(
            f"document.querySelector('{tag}')?.openOrClosedShadowRoot?.textContent", sandbox="system")

    def click_toolbar_button(self):
        """The extension's own, with the pointer."""
        x, y = self._evaluate_in_browser("""(() => {
            const {screenX, screenY} = document.getElementById(
                "browser-link_postal-scale-browser-action");
            return [screenX + 10, screenY + 10];
        })()""")
        self._session.pointer_clicks((x, y))

    def toolbar_words(self):
        """What the extension's button says when the pointer is on it."""
        return self._evaluate_in_browser(
            "document.getElementById('browser-link_postal-scale-BAP').label")

    def process_in_front(self):
        """The number of the page's own, as the system knows it."""
        return self._evaluate_in_browser(
            "gBrowser.selectedBrowser.browsingContext.currentWindowGlobal.osPid")

    def permissions_page(self):
        """What the browser itself says of the extension."""
        page = self.new_page("about:addons", "tab")
        self._evaluate_in_browser(f"""(() => {{
            gBrowser.selectedBrowser.contentWindow.loadView("addons://detail/{_EXTENSION}");
        }})()""")
        tab = "gBrowser.selectedBrowser.contentDocument.querySelector('[name=permissions]')"
        place = wait_until(lambda: self._evaluate_in_browser(
            f"(({{screenX, screenY}}) => screenX && [screenX + 20, screenY + 15])({tab} ?? {{}})"),
            "the extension's page")
        self._session.pointer_clicks(place)
        return page

    def options_page(self):
        host = self._evaluate_in_browser(
            f"""WebExtensionPolicy.getByID("{_EXTENSION}").mozExtensionHostname""")
        return self.new_page(f"moz-extension://{host}/options.html", "tab")

    def alert_is_open(self):
        try:
            self.call("WebDriver:GetAlertText")
        except RuntimeError:
            return False
        return True

    def call(self, command, **parameters):
        expected = self.post(command, **parameters)
        while True:
            _, number, error, result = self._receive()
            if number != expected:
                continue
            if error:
                raise RuntimeError(f"{command}: {error['error']}: {error['message']}")
            return result

    def post(self, command, **parameters):
        self._last_call += 1
        self._send([0, self._last_call, command, parameters])
        return self._last_call

    def _start(self):
        self._last_call = 0
        self._received = b""
        profile = self.home / "profile"
        profile.mkdir(exist_ok=True)
        preferences = {
            "marionette.port": 0,
            "network.proxy.type": 1,
            "network.proxy.ssl": "127.0.0.1",
            "network.proxy.ssl_port": self._site.port,
            # Automation would otherwise change the profile into one that no user has.
            "remote.prefs.recommended": False,
            "browser.aboutwelcome.enabled": False,
            "datareporting.policy.dataSubmissionPolicyBypassNotification": True,
            "browser.sessionstore.resume_from_crash": False,
            "toolkit.startup.max_resumed_crashes": -1,
        }
        (profile / "user.js").write_text("".join(
            f"user_pref({json.dumps(name)}, {json.dumps(value)});\n"
            for name, value in preferences.items()), encoding="ascii")
        port_file = profile / "MarionetteActivePort"
        port_file.unlink(missing_ok=True)
        self._process = self._session.spawn(
            ["firefox-esr", "--marionette", "--remote-allow-system-access", "--profile", profile,
             "--window-size", "700,600", "about:blank"],
            self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        port = int(wait_until(lambda: port_file.exists() and port_file.read_text(),
                              "Firefox's port", 3 * PATIENCE))
        self._connection = socket.create_connection(("127.0.0.1", port))
        self._connection.settimeout(3 * PATIENCE)
        self._receive()
        self.call("WebDriver:NewSession", acceptInsecureCerts=True,
                  unhandledPromptBehavior="ignore")
        self.call("Addon:Install", path=str(self._build / "browser" / "firefox"), temporary=True)

    def _evaluate_in_browser(self, script):
        """Of its own window, not of a page. Waits for a promise."""
        self.call("Marionette:SetContext", value="chrome")
        try:
            return self.call("WebDriver:ExecuteScript", script=f"return {script}", args=[])["value"]
        finally:
            self.call("Marionette:SetContext", value="content")

    def _send(self, message):
        content = json.dumps(message).encode("utf-8")
        self._connection.sendall(str(len(content)).encode("ascii") + b":" + content)

    def _receive(self):
        while b":" not in self._received:
            self._read_more()
        length, self._received = self._received.split(b":", 1)
        while len(self._received) < int(length):
            self._read_more()
        content = self._received[: int(length)]
        self._received = self._received[int(length) :]
        return json.loads(content)

    def _read_more(self):
        data = self._connection.recv(65536)
        if not data:
            raise RuntimeError("the browser is gone")
        self._received += data


class FirefoxPage:
    def __init__(self, browser, handle):
        self._browser = browser
        self._handle = handle

    def go(self, url):
        self._select()
        self._browser.call("WebDriver:Navigate", url=url)

    def wait_for_load(self, url):
        wait_until(lambda: self.evaluate("document.readyState === 'complete' && location.href")
                   == url, f"{url} loaded")

    def evaluate(self, script, **options):
        self._select()
        return self._browser.call("WebDriver:ExecuteScript", script=f"return {script}",
                                  args=[], **options)["value"]

    def click(self, element):
        """As the person's own mouse would. @param element its id"""
        self._select()
        found = self._browser.call("WebDriver:FindElement", using="css selector",
                                   value=f"#{element}")["value"]
        self._browser.call("WebDriver:ElementClick", id=next(iter(found.values())))

    def start(self, script):
        """Does not wait for its end."""
        self._select()
        self._browser.post("WebDriver:ExecuteScript", script=script, args=[])

    @contextlib.contextmanager
    def held_up(self, _site):
        """Its process stands still. One that waits for its site's answer goes on with the rest here,
        unlike in other browsers."""
        process = self._browser.process_in_front()
        os.kill(process, signal.SIGSTOP)
        try:
            yield
        finally:
            os.kill(process, signal.SIGCONT)

    def close(self):
        """Nothing happens if it is closed already."""
        if self._handle:
            self._select()
            self._browser.call("WebDriver:CloseWindow")
            # A further window cannot be opened from one that is closed.
            remaining = self._browser.call("WebDriver:GetWindowHandles")[0]
            self._browser.call("WebDriver:SwitchToWindow", handle=remaining, focus=False)
        self._handle = None

    def _select(self):
        """For the automation; what the user looks at stays as it is."""
        self._browser.call("WebDriver:SwitchToWindow", handle=self._handle, focus=False)
