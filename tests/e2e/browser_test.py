"""A router owner's way through the page: run with the path of gatewayd, or the URL of one that runs
elsewhere (gateway.py says how it is reached), and a folder for pictures of every view if they are
wanted. AXE names axe-core's script; without it nobody looks for barriers."""

import json
import os
import sys
import unittest

from selenium.webdriver.common.keys import Keys

from gateway import PASSWORD, ROOT, gateway_of
from page import Page

PROGRAM = sys.argv.pop(1)
PICTURES = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
AXE = open(os.environ["AXE"], encoding="utf-8").read() if os.environ.get("AXE") else None
NETWORK = "wifi/radios/0/networks/0"
PASSPHRASE = "/radios/0/networks/0/security/passphrase"
OTHER = "another password"
DARK = "rgb(23, 20, 17)"
BACKGROUND = "return getComputedStyle(document.body).backgroundColor"
AREAS = ("gateway", "wifi", "network", "security", "service", "mediashare", "qos", "misc")


class Walk:
    width = 0

    def setUp(self):
        self.gateway = gateway_of(PROGRAM)
        self.pages = []
        self.page = self.open()

    def tearDown(self):
        for page in self.pages:
            page.close()
        self.gateway.__exit__()

    def open(self):
        self.pages.append(Page(self.gateway.url, self.width, PICTURES, AXE))
        return self.pages[-1]

    def forwards(self):
        return self.gateway.database("service")["portForwarding"]["rules"]

    def test_logs_in_and_sees_how_things_are(self):
        page = self.page
        page.find("#login")
        self.assertEqual([], page.seen("#gateway, #areas, #logout, #bar, dialog"))
        page.shoot("log-in")
        self.assertEqual([], page.faults())
        page.fill_entry("admin", "not the password")
        page.find("#login-problem", "Wrong user or password.")
        page.log_in()
        self.assertEqual([], page.seen("#login, #entry, #password, #bar"))
        for text in ("198.51.100.23", "Garden Path Guests", "5 GHz", "4.2.1", "anna-phone"):
            page.find(".tile", text)
        page.click("#logout")
        page.find("#login")
        self.assertEqual([], page.seen("#gateway, #logout, .tile"))

    def test_changes_the_wifi_password(self):
        page = self.page
        page.log_in()
        page.go(NETWORK, "Garden Path")
        self.assertEqual("", page.value(PASSPHRASE))
        self.assertEqual("password", page.field(PASSPHRASE).get_attribute("type"))
        page.fill(PASSPHRASE, "short")
        page.save("Nothing was saved")
        self.assertIn("Wi-Fi password: is not valid. 8 to 63", page.problem(PASSPHRASE))
        page.shoot("refused")
        self.assertEqual([], page.faults())
        page.fill(PASSPHRASE, "a longer one that is new")
        page.find("#count", "1 unsaved change")
        page.save()
        page.gone("#bar")
        security = self.gateway.database("wifi")["radios"][0]["networks"][0]["security"]
        self.assertEqual("a longer one that is new", security["passphrase"])
        self.assertEqual("", page.value(PASSPHRASE))
        self.assertNotIn("a longer one", page.run("return document.body.innerText"))

    def test_adds_moves_and_removes_port_forwards(self):
        page = self.page
        page.log_in()
        page.go("service/portForwarding", "Port forwards")
        page.click("[id='field-/portForwarding/rules-add']")
        page.find("h1", "Port forward 9")
        rule = "/portForwarding/rules/8"
        page.save("Nothing was saved")
        self.assertIn("Name: must have 1 to 64 characters", page.problem(rule + "/name"))
        for name, text in (("name", "chess club"), ("external/ports/from", "7000"),
                           ("external/ports/to", "7001"), ("internal/host", "192.168.77.300"),
                           ("internal/ports/from", "70000"), ("internal/ports/to", "7001")):
            page.fill(f"{rule}/{name}", text)
        page.save("Nothing was saved")
        self.assertIn("must be from 1 to 65535", page.problem(rule + "/internal/ports/from"))
        page.fill(rule + "/internal/ports/from", "7000")
        page.save("Nothing was saved")
        self.assertIn("Address of the device: is not valid. Four numbers",
                      page.problem(rule + "/internal/host"))
        self.assertEqual(8, len(self.forwards()))
        page.fill(rule + "/internal/host", "192.168.77.30")
        page.save()
        self.assertEqual(("chess club", 9), (self.forwards()[8]["name"], self.forwards()[8]["id"]))

        page.go("service/portForwarding", "Port forwards")
        page.find("[id='field-/portForwarding/rules/8-up']").send_keys(Keys.ENTER)
        self.assertEqual("field-/portForwarding/rules/7-up",
                         page.run("return document.activeElement.id"))
        page.click("[id='field-/portForwarding/rules/0-remove']")
        page.find("#count", "2 unsaved changes")
        page.click("#count")
        page.find("#changes", "Forwards, storage web page: taken out")
        page.shoot("rearranged")
        page.save()
        self.assertEqual([2, 3, 4, 5, 6, 7, 9, 8], [rule["id"] for rule in self.forwards()])

    def test_is_refused_by_the_gateway_in_the_words_of_the_field(self):
        page = self.page
        page.log_in()
        page.go("wifi/bandSteering", "Band steering")
        page.fill("/bandSteering/exceptions/1", "02:00:5E:10:00:18")
        page.fill("/bandSteering/rssiThreshold", "-70")
        page.save("Nothing was saved: Band steering, Exceptions has the same entry twice")
        page.find(".list .problem", "Exceptions: has the same entry twice")
        self.assertEqual(-68, self.gateway.database("wifi")["bandSteering"]["rssiThreshold"])
        self.assertEqual("-70", page.value("/bandSteering/rssiThreshold"))

    def test_comes_back_to_places_and_asks_about_changes(self):
        page = self.page
        page.log_in()
        page.go("wifi/radios/1", "radio1")
        page.go("wifi/schedule", "Schedule")
        page.browser.back()
        page.find("h1", "radio1")
        page.browser.refresh()
        page.find("h1", "radio1")
        page.fill("/radios/1/txPower", "70")
        page.find(".field.changed .mark", "changed")
        self.assertTrue(page.run("const e = new Event('beforeunload', {cancelable: true});"
                                 "dispatchEvent(e); return e.defaultPrevented"))
        page.run("location.hash = '#/qos'")
        page.find("dialog", "Sending power: 100 % → 70 %")
        page.shoot("question")
        self.assertEqual([], page.faults())
        page.click("dialog button", "Stay here")
        page.gone("dialog")
        self.assertEqual(("#/wifi/radios/1", "70"),
                         (page.run("return location.hash"), page.value("/radios/1/txPower")))
        page.browser.back()  # to the overview
        page.click("dialog button", "Discard")
        page.find("h1", "Overview")
        page.go("wifi/radios/1", "radio1")
        self.assertEqual("100", page.value("/radios/1/txPower"))
        page.fill("/radios/1/txPower", "60")
        page.click("#logout")
        page.click("dialog button", "Save")
        page.find("#login")
        self.assertEqual(60, self.gateway.database("wifi")["radios"][1]["txPower"])

    def test_keeps_the_changes_of_two_browsers(self):
        mine, theirs = self.page, self.open()
        for page in (mine, theirs):
            page.log_in()
            page.go("wifi/radios/0", "radio0")
        theirs.choose("[id='field-/radios/0/channel']", "11")
        theirs.fill("/radios/0/txPower", "55")
        theirs.save()
        mine.choose("[id='field-/radios/0/channel']", "1")
        mine.save("somebody else has changed this meanwhile")
        radio = self.gateway.database("wifi")["radios"][0]
        self.assertEqual((11, 55), (radio["channel"], radio["txPower"]))
        self.assertEqual(("1", "55"), (mine.value("/radios/0/channel"), mine.value("/radios/0/txPower")))
        mine.save()
        radio = self.gateway.database("wifi")["radios"][0]
        self.assertEqual((1, 55), (radio["channel"], radio["txPower"]))

    def test_keeps_what_two_browsers_add(self):
        mine, theirs = self.page, self.open()
        for page, name in ((mine, "mine"), (theirs, "theirs")):
            page.log_in()
            page.go("service/wakeOnLan", "Wake-up")
            page.click("[id='field-/wakeOnLan/devices-add']")
            page.fill("/wakeOnLan/devices/2/name", name)
            page.fill("/wakeOnLan/devices/2/mac", "02:00:5E:10:00:41")
        mine.save()
        theirs.save("somebody else has changed this meanwhile")
        theirs.go("service/wakeOnLan", "Wake-up")
        theirs.save()
        self.assertEqual([("study-desktop", 1), ("storage-box", 2), ("mine", 3), ("theirs", 4)],
                         [(one["name"], one["id"])
                          for one in self.gateway.database("service")["wakeOnLan"]["devices"]])

    def test_saves_by_keyboard_alone(self):
        page = self.page
        page.log_in()
        page.find("h1", "Overview")
        if page.seen("#menu"):
            page.run("document.body.focus(); document.activeElement.blur()")
            page.tab_to("e.id === 'menu'").send_keys(Keys.ENTER)
        page.tab_to("e.hash === '#/wifi'").send_keys(Keys.ENTER)
        page.find("h1", "Wi-Fi")
        field = page.tab_to("e.id === 'field-/country'")
        field.send_keys(Keys.CONTROL, "a")
        field.send_keys("AT")
        page.tab_to("e.id === 'save'").send_keys(Keys.ENTER)
        page.told("Saved.")
        self.assertEqual("AT", self.gateway.database("wifi")["country"])

    def test_sets_passwords_and_gives_each_role_its_due(self):
        page = self.page
        page.log_in()
        page.go("gateway/users/0", "admin")
        page.click("#settings button", "Set the password")
        for name, text in (("current", PASSWORD), ("new", OTHER), ("again", OTHER + "!")):
            page.find("#password-" + name).send_keys(text)
        page.click("dialog .primary")
        page.find("dialog .problem", "The two new passwords differ.")
        page.shoot("password")
        self.assertEqual([], page.faults())
        page.find("#password-again").send_keys(Keys.BACKSPACE, Keys.ENTER)
        page.told("The password of admin is set.")
        for user, index in (("family", 1), ("support", 2)):
            page.go(f"gateway/users/{index}", user)
            page.click("#settings button", "Set the password")
            for name in ("new", "again"):
                page.find("#password-" + name).send_keys(OTHER)
            page.click("dialog .primary")
            page.told(f"The password of {user} is set.")
        page.click("#logout")
        page.fill_entry("admin", PASSWORD)
        page.find("#login-problem", "Wrong user or password.")
        page.log_in("support", OTHER)
        page.go(NETWORK, "Garden Path")
        self.assertEqual([], page.seen("#settings :is(input, select, button)"))
        page.find(".line", "(secret)")
        page.shoot("view-only")
        page.click("#logout")
        page.log_in("family", OTHER)
        page.go(NETWORK, "Garden Path")
        page.field("/radios/0/networks/0/ssid")
        page.go("gateway/users", "Users")
        self.assertEqual([], page.seen("#settings :is(input, select, button)"))
        page.click("#logout")
        page.log_in("admin", OTHER)

    def test_keeps_changes_when_the_session_ends(self):
        page = self.page
        page.log_in()
        page.go("misc/notifications", "Notifications")
        self.gateway.cookie = "gatewayd=" + page.browser.get_cookies()[0]["value"] \
            if page.browser.get_cookies() else "gatewayd=" + self.cookie_of(page)
        page.fill("/notifications/quiet/from", "1115PM")
        self.gateway.ask("POST", "/api/v1/logout", {})
        page.click("#save")
        page.find("#login-note", "your changes are still here")
        page.gone("#gateway")
        page.fill_entry("admin", PASSWORD)
        page.find("h1", "Notifications")
        page.save()
        self.assertEqual("23:15", self.gateway.database("misc")["notifications"]["quiet"]["from"])

    def cookie_of(self, page):
        cookies = page.browser.execute_cdp_cmd("Network.getAllCookies", {})["cookies"]
        return next(cookie["value"] for cookie in cookies if cookie["name"] == "gatewayd")

    def test_looks_right_at_every_place(self):
        page = self.page
        page.log_in()
        page.find(".tile", "anna-phone")
        places = ["", "wifi/radios/0", NETWORK, "service/portForwarding/rules/0", "gateway/users/1",
                  "network/lans/0", "network/wans/0", "security/vpn", "qos/rules/0"]
        for area in page.run("return [...document.querySelectorAll('#areas > ul > li > a')].map((a) => a.hash.slice(2))")[1:]:
            page.go(area)
            page.wait(lambda: page.run("return document.querySelectorAll('#areas ul ul a').length > 0 && "
                                       "document.querySelector('#areas ul ul a').hash.startsWith('#/" + area + "')"), area)
            places += [area] + page.run(
                "return [...document.querySelectorAll('#areas ul ul a')].map((a) => a.hash.slice(2))")
        self.assertGreater(len(places), 50)
        for place in places:
            with self.subTest(place=place):
                page.go(place)
                page.wait(lambda: page.run("return document.title").split(" – ")[0] == page.find("h1").text, place)
                page.shoot(place.replace("/", "-") or "overview")
                self.assertEqual([], page.faults())

    def test_speaks_german_and_is_dark(self):
        page = self.page
        page.log_in()
        if page.seen("#menu"):
            page.click("#menu")
        page.choose("#language", "Deutsch")
        page.find("h1", "Übersicht")
        for device, background in (("dark", DARK), ("light", "rgb(244, 242, 239)")):
            page.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
                "features": [{"name": "prefers-color-scheme", "value": device}]})
            page.wait(lambda: background == page.run(BACKGROUND), f"the page does not follow a {device} device")
        page.choose("#theme", "Dunkel")
        page.resize(800, 360 if self.width < 400 else None)
        for place, heading in (("", "Übersicht"), (NETWORK, "Garden Path"), ("service/portForwarding", "Portweiterleitungen")):
            page.go(place, heading)
            self.assertEqual([], page.faults())
            page.shoot("dark-" + (place.replace("/", "-") or "overview"))
        self.assertEqual(DARK, page.run(BACKGROUND))
        self.assertEqual("de", page.run("return document.documentElement.lang"))
        page.go(NETWORK, "Garden Path")
        page.fill(PASSPHRASE, "kurz")
        page.save("Nichts wurde gespeichert")
        self.assertIn("WLAN-Passwort: ist nicht gültig", page.problem(PASSPHRASE))
        page.browser.refresh()
        page.find("#areas a, #menu", "Menü" if self.width < 400 else "Übersicht")


def sentences(schema):
    """The descriptions and hints of a schema."""
    for name, value in schema.items() if isinstance(schema, dict) else enumerate(schema):
        if name in ("description", "hint") and isinstance(value, str):
            yield value
        elif isinstance(value, (dict, list)):
            yield from sentences(value)


class OnADesk(Walk, unittest.TestCase):
    width = 1280

    def test_knows_every_sentence_of_the_schemas_in_german(self):
        known = set(self.page.browser.execute_async_script(
            "import('/german_about.js').then((m) => arguments[0](Object.keys(m.about)))"))
        for area in AREAS:
            with open(f"{ROOT}/examples/data/{area}/{area}_SCHEMA.ldb", encoding="utf-8") as file:
                self.assertEqual(set(), set(sentences(json.load(file))) - known, area)


class InAHand(Walk, unittest.TestCase):
    width = 390


if __name__ == "__main__":
    unittest.main()
