"""The player's element: its buttons, lists, windows and questions."""

import datetime
import time

from pages import PLAYER, VIEWER, Page

from selenium import webdriver
from selenium.webdriver.common.actions.action_builder import ActionBuilder
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys


class PlayerPage(Page):
    def open_player(self):
        self.open(PLAYER.format(port=self.camera.port))
        self.moving("p", "VS.VideoStream")
        self.camera.asked(clear="yes")

    def click(self, element):
        """With the mouse, where the element is: the driver finds no place of one that is in a shadow tree."""
        mouse = ActionBuilder(self.browser)
        place = self.js("const box = arguments[0].getBoundingClientRect(); return [box.x + box.width / 2, box.y + 9]",
                        element)
        mouse.pointer_action.move_to_location(*map(int, place)).click()
        mouse.perform()

    def type_time(self, when):
        for number, text in enumerate(when.strftime("%Y %m %d %H %M %S").split()):
            # The control writes 09 for 9.
            self.click(self.child(f"TCR({number})"))
            webdriver.ActionChains(self.browser).send_keys(str(int(text))).perform()

    def test_lists(self):
        self.open_player()
        self.assertEqual(self.js("return [...child('p', 'CamList').options].map((each) => each.text)"), ["Yard", "Gate"])
        self.choose("CamList", "Gate")
        self.asked_for("/live/2")
        self.choose("Resolution", "320x240 (60% compression)")
        self.press(5)
        self.asked_for("/live/2.*0320x0240040")
        for rate, slowest, fastest in (("2 FPS", 1, 3), ("20 FPS", 4, 25)):
            self.choose("FrameRate", rate)
            self.js("events.length = 0")
            self.until(f"events.some(([, name, it]) => name === 'StreamInfo' && it.FrameRate >= {slowest} && "
                       f"it.FrameRate <= {fastest})")
        self.moving("p", "VS.VideoStream")
        # The choices are there in the next session.
        self.open(PLAYER.format(port=self.camera.port))
        self.until("child('p', 'FrameRate')?.selectedOptions[0]?.text === '20 FPS'")
        self.until("child('p', 'Resolution').selectedOptions[0].text.startsWith('320x240 (60%')")

    def test_archive(self):
        self.open_player()
        self.choose("FrameRate", "10 FPS")
        when = datetime.datetime.now() - datetime.timedelta(hours=3)
        for leave in (lambda: self.press(7), lambda: webdriver.ActionChains(self.browser).send_keys(Keys.ENTER).perform()):
            # The boxes keep what is typed while live pictures write theirs.
            self.press(5)
            self.asked_for("/live/1")
            self.until(f"child('p', 'TCR(3)').value === '{datetime.datetime.now():%H}'")
            self.type_time(when)
            time.sleep(0.5)
            leave()
            self.asked_for(f"Device=1&Day={when:%d}&Month={when:%m}&Year={when:%Y}&Hour={when:%H}&Minute={when:%M}"
                           f"&Second={when:%S}&")
            self.until(f"child('p', 'TCR(3)').value === '{when:%H}'")
            self.camera.asked(clear="yes")
            when -= datetime.timedelta(minutes=61)
        for number, step in ((3, "F"), (1, "R"), (0, "T"), (4, "B")):
            self.press(number)
            self.asked_for(f"Second=0&{step}=0")
        self.press(5)
        self.asked_for("/live/1")
        self.moving("p", "VS.VideoStream")
        self.press(2)  # which lets one more picture come
        time.sleep(1)
        self.camera.asked(clear="yes")
        time.sleep(0.5)
        self.assertEqual(self.camera.asked(), [])
        hidden = self.js("return child('p', 'VS.StatusDisplay').hidden")
        self.press(6)
        self.until(f"child('p', 'VS.StatusDisplay').hidden !== {str(hidden).lower()}")

    def test_message_windows_and_full_screen(self):
        """A choice reaches the server; windows say what they are, and close."""
        self.open_player()
        self.press(13)
        self.answer("Hello there")
        self.no_dialog()
        self.asked_for("message.msg=Hello")
        self.press(13)
        self.dialog().send_keys(Keys.ESCAPE)
        self.no_dialog()
        for number, caption, items, button, command in ((15, "Alerts", "AlertList", "Activate", "activatealert=1"),
                                                        (14, "I/O Control", "OutList", "OutToogleOff", r"output=1\+0"),
                                                        (14, "I/O Control", "OutList", "OutToogle", r"output=1\+1")):
            self.press(number)
            self.until(f"child('p', '{items}')?.options.length")
            self.assertEqual(self.dialog().accessible_name, caption)
            self.js("arguments[0].selectedIndex = 0; arguments[0].dispatchEvent(new Event('change'))", self.child(items))
            self.js("arguments[0].click()", self.child(button))
            self.no_dialog()
            self.asked_for(command)
        self.press(11)
        self.until("child('p', 'Log')?.value.length")
        self.dialog().find_element(By.CSS_SELECTOR, ".close").click()
        self.no_dialog()
        self.press(16)
        self.moving("p", "vs.VideoStream")
        self.dialog().send_keys(Keys.ESCAPE)
        self.no_dialog()

    def test_snapshot(self):
        with self.photographed() as (jpeg, camera, gateway):
            self.open(PLAYER.format(port=camera.port), gateway)
            self.until("shows('p', 'VS.VideoStream')")
            self.press(10)
            self.assertRegex(self.dialog().find_element(By.CSS_SELECTOR, "input").get_attribute("value"), r"^\d{4}-.*\.jpg$")
            self.answer("shot.jpg")
            # A new name is asked about as well.
            self.until("[...it('p').shadowRoot.querySelectorAll('dialog button')].find((it) => it.value === 'Yes')").click()
            self.assertEqual(self.downloaded("shot.jpg"), jpeg)
            self.no_dialog()

    def test_two_elements_a_clip_and_several_cameras(self):
        self.open(PLAYER.format(port=self.camera.port) + VIEWER.format(url=self.live(2)))
        self.moving("p", "VS.VideoStream")
        self.moving("v")
        # A page without a style sheet has them in their own sizes, where they can be seen.
        self.assertEqual(self.js("return ['p', 'v'].map((id) => [it(id).clientWidth, it(id).clientHeight])"),
                         [[353, 396], [401, 260]])
        self.assertTrue(self.js("const {x, y} = it('v').getBoundingClientRect(); "
                                "return document.elementFromPoint(x + 200, y + 100) === it('v')"))
        self.press(9)
        self.answer("clip.avi")
        self.until("it('p').shadowRoot.querySelector('dialog select')")
        self.dialog().find_element(By.CSS_SELECTOR, "button").click()
        self.until("!child('p', 'Player(8)').hidden")
        for _ in range(2):
            self.js("events.length = 0")
            self.told("StreamInfo", "p")
        self.press(8)
        self.assertIn("Total frames", self.dialog().text)
        self.dialog().find_element(By.CSS_SELECTOR, "button").click()
        clip = self.downloaded("clip.avi")
        self.assertEqual((clip[:4], clip[8:12]), (b"RIFF", b"AVI "))
        self.assertGreater(len(clip), 5000)
        self.press(17)
        self.until("child('p', 'Cameras')?.options.length === 2")
        self.assertEqual(self.nameless(), [])
        self.js("const box = child('p', 'Cameras'); for (const each of box.options) each.selected = true;"
                "box.dispatchEvent(new Event('change')); child('p', 'Go').click()")
        self.no_dialog()
        self.moving("p", "VS.VideoStream")

    def test_names_for_everyone(self):
        self.open_player()
        self.assertEqual(self.nameless(), [])
        buttons = self.js("return [...it('p').shadowRoot.querySelectorAll('button')].filter((it) => it.checkVisibility())"
                          ".map((it) => it.ariaLabel)")
        self.assertGreater(len(buttons), 14)
        self.assertTrue({"Search", "Snapshot", "Fullscreen", "Alerts"} < set(buttons), buttons)
        # With the keyboard alone: Tab goes on in the toolbar's order, Enter presses, the strip's menu opens.
        self.js("child('p', 'Player(2)').focus()")
        webdriver.ActionChains(self.browser).send_keys(Keys.TAB).perform()
        self.assertEqual(self.js("return it('p').shadowRoot.activeElement.dataset.child"), "Player(5)")
        self.press(6)
        self.until("!child('p', 'VS.StatusDisplay').hidden")
        self.js("child('p', 'VS.StatusDisplay').focus()")
        webdriver.ActionChains(self.browser).send_keys(Keys.ENTER).perform()
        self.until("it('p').shadowRoot.querySelector('.menu [role=menuitemcheckbox]')")
        self.assertEqual(self.nameless(), [])

    def test_login_of_the_gateways_own_page(self):
        with self.photographed("--auth", "basic", "--user", "ann", "--password", "secret") as (_, _, gateway):
            self.browser.get(gateway.address)
            for user, password in (("ann", "wrong"), ("ann", "secret")):
                self.until("customElements.get('user-control-1') && document.querySelector('user-control-1')")
                self.js("document.querySelector('details').open = true; it('user').value = arguments[0];"
                        "it('password').value = arguments[1]; document.querySelector('form button').click();"
                        "document.querySelector('user-control-1').id = 'p'", user, password)
                if password == "wrong":
                    self.promised("it('p').ready")
                    self.until("it('p').ariaBusy === 'false'")
                    self.assertEqual(self.js("return child('p', 'CamList').options.length"), 0)
            self.until("child('p', 'CamList')?.options.length === 1")
            self.until("shows('p', 'VS.VideoStream')")
