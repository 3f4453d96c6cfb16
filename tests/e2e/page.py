"""The gateway's page in a headless Chromium, in the words of somebody who looks at it: what is not
visible is not there."""

import os
import shutil
import tempfile

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select, WebDriverWait

from gateway import PASSWORD

FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--disable-dev-shm-usage", "--lang=en-GB"]
PATIENCE = float(os.environ.get("GATEWAYD_PATIENCE", "10"))  # seconds


class Page:
    def __init__(self, url, width, screenshots=None, axe=None):
        self.url, self.width, self.screenshots, self.axe = url, width, screenshots, axe
        self.profile = tempfile.mkdtemp(prefix="chromium-")
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS + ["--user-data-dir=" + self.profile]:
            options.add_argument(flag)
        self.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.resize(800)
        self.browser.get(url)

    def close(self):
        self.browser.quit()
        shutil.rmtree(self.profile, ignore_errors=True)

    def resize(self, height, width=None):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width or self.width, "height": height, "deviceScaleFactor": 1, "mobile": False})

    def run(self, script, *values):
        return self.browser.execute_script(script, *values)

    # --- Looking ---

    def wait(self, condition, what):
        return WebDriverWait(self.browser, PATIENCE).until(lambda unused: condition(), what)

    def seen(self, selector):
        """The elements that a person sees."""
        return [e for e in self.browser.find_elements(By.CSS_SELECTOR, selector) if e.is_displayed()]

    def find(self, selector, text=""):
        """The first visible element with this text, as soon as there is one."""
        return self.wait(lambda: next((e for e in self.seen(selector) if text in e.text), None),
                         f"no {selector} with {text!r}")

    def gone(self, selector):
        self.wait(lambda: not self.seen(selector), f"{selector} is still there")

    def told(self, text):
        self.find("#status", text)

    def field(self, pointer):
        return self.find(f"[id='field-{pointer}']")

    def value(self, pointer):
        return self.field(pointer).get_attribute("value")

    def problem(self, pointer):
        return self.find(f"[id='field-{pointer}-problem']").text

    # --- Doing ---

    def click(self, selector, text=""):
        element = self.find(selector, text)
        self.run("arguments[0].scrollIntoView({block: 'center'})", element)
        element.click()

    def fill(self, pointer, text):
        self.field(pointer).send_keys(Keys.CONTROL, "a")
        self.field(pointer).send_keys(text if text else Keys.DELETE)

    def choose(self, selector, text):
        Select(self.find(selector)).select_by_visible_text(text)

    def log_in(self, user="admin", password=PASSWORD):
        self.fill_entry(user, password)
        self.gone("#login")

    def fill_entry(self, user, password):
        name = self.find("#user")
        name.clear()
        name.send_keys(user)
        self.find("#password").send_keys(password, Keys.ENTER)

    def go(self, place, heading=""):
        self.run("location.hash = arguments[0]", "#/" + place)
        self.wait(lambda: self.run("return location.hash") == "#/" + place, place)
        self.wait(lambda: not self.seen("#content[aria-busy='true']"), f"{place} stays on its way")
        self.find("h1", heading)

    def save(self, told="Saved."):
        self.click("#save")
        self.told(told)

    def tab_to(self, script):
        """Presses Tab until the element with the keyboard answers true."""
        for _ in range(120):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            if self.run(f"const e = document.activeElement; return {script}"):
                return self.browser.switch_to.active_element
        raise AssertionError("the keyboard never came to " + script)

    # --- Judging ---

    def shoot(self, name):
        """A picture of the whole page, however long."""
        if self.screenshots:
            height = self.run("return document.documentElement.scrollHeight")
            self.resize(max(800, min(height, 4000)))
            self.browser.save_screenshot(os.path.join(self.screenshots, f"{name}-{self.width}.png"))
            self.resize(800)

    def faults(self):
        """What axe-core finds, and whether something sticks out of the page."""
        found = []
        if self.run("return document.documentElement.scrollWidth > innerWidth"):
            found.append("the page is wider than the screen")
        if self.axe:
            if not self.run("return 'axe' in window"):
                self.run(self.axe)
            found += self.browser.execute_async_script(
                "const done = arguments[0]; axe.run().then((r) => done(r.violations.map((v) => "
                "`${v.id}: ${v.help}: ${v.nodes.map((n) => n.target + ' ' + n.failureSummary).slice(0, 3)}`)))")
        return found
