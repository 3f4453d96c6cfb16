"""A person's way through the pages, in headless Chromium: run with the path of gatewayd, and a
folder for screenshots if they are wanted."""

import shutil
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

from gateway import Gateway, PASSWORD

PROGRAM = sys.argv.pop(1)
SCREENSHOTS = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync",
         "--disable-dev-shm-usage", "--window-size=1000,760"]


class BrowserTest(unittest.TestCase):
    def setUp(self):
        self.profile = tempfile.mkdtemp(prefix="chromium-")
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS + ["--user-data-dir=" + self.profile]:
            options.add_argument(flag)
        self.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.gateway = Gateway(PROGRAM)
        self.browser.get(self.gateway.url)

    def tearDown(self):
        self.browser.quit()
        self.gateway.__exit__()
        shutil.rmtree(self.profile, ignore_errors=True)

    def find(self, selector):
        return WebDriverWait(self.browser, 10).until(
            lambda browser: next((e for e in browser.find_elements(By.CSS_SELECTOR, selector)
                                  if e.is_displayed()), None), selector)

    def wait_for(self, selector, text):
        WebDriverWait(self.browser, 10).until(
            lambda browser: any(text in e.text
                                for e in browser.find_elements(By.CSS_SELECTOR, selector)),
            f"{selector} never said {text!r}")

    def log_in(self, password):
        self.find("#password").send_keys(password, Keys.ENTER)

    def open_branch(self, path):
        """Opens nested branches with the keyboard."""
        scope = self.find("#values")
        for name in path:
            summary = WebDriverWait(scope, 10).until(lambda s: next(
                (e for e in s.find_elements(By.TAG_NAME, "summary")
                 if e.text.split(" ")[0] == name), None), name)
            summary.send_keys(Keys.ENTER)
            scope = summary.find_element(By.XPATH, "..")

    def shoot(self, name):
        if SCREENSHOTS:
            self.browser.save_screenshot(f"{SCREENSHOTS}/{name}.png")

    def test_changes_the_name_of_a_wifi_network(self):
        self.log_in(PASSWORD)
        self.find("#areas li:nth-child(2) button").click()
        self.wait_for("#area-name", "wifi")
        self.open_branch(["radios", "0", "networks", "0"])
        selector = "[id='value-wifi/radios/0/networks/0/ssid']"
        name = self.find(selector)
        self.assertEqual("Garden Path", name.get_attribute("value"))
        name.send_keys(Keys.CONTROL, "a")
        name.send_keys("Kitchen Window", Keys.ENTER)
        self.wait_for("#status", "Saved ssid.")
        saved = self.gateway.database("wifi")["radios"][0]["networks"][0]["ssid"]
        self.assertEqual("Kitchen Window", saved)

        name.send_keys(" that is much too long for a network", Keys.ENTER)
        self.wait_for(".problem", "must be at most 32 characters long")
        self.wait_for("#status", "was not saved")
        self.assertEqual("true", name.get_attribute("aria-invalid"))
        self.shoot("refused")
        saved = self.gateway.database("wifi")["radios"][0]["networks"][0]["ssid"]
        self.assertEqual("Kitchen Window", saved)

        self.browser.set_window_size(390, 800)
        self.assertLessEqual(self.browser.execute_script("return document.body.scrollWidth"),
                             self.browser.execute_script("return window.innerWidth"))
        self.find("#logout").click()
        self.find("#password")

    def test_reads_the_wait_after_five_failed_logins(self):
        for attempt in range(5):
            self.log_in("not the password")
            self.wait_for("#status", "Wrong user" if attempt < 4 else "Wait 1 minute")
            self.browser.execute_script("document.getElementById('status').textContent = ''")


if __name__ == "__main__":
    unittest.main()
