#!/usr/bin/python3
"""The web page of veldra serve in headless Chromium: the token asked for, a component's rows
and chart, and both following a change of input. Screenshots go to the build folder."""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support import expected_conditions as shows
from selenium.webdriver.support.select import Select
from selenium.webdriver.support.ui import WebDriverWait

ARGS = None
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking",
         "--disable-component-update", "--disable-sync", "--no-first-run", "--window-size=1360,1000"]


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.root = tempfile.mkdtemp(prefix="veldra-page-test.")
        folder = os.path.join(cls.root, "components")
        os.makedirs(folder)
        shutil.copy(ARGS.sample_component, folder)
        cls.million_values(folder)
        env = dict(os.environ, XDG_CONFIG_HOME=os.path.join(cls.root, "config"), VELDRA_SAMPLE_DB=ARGS.sample_db)
        cls.server = subprocess.Popen([ARGS.veldra, "serve", folder, "--port", "0", "--access-log", os.devnull],
                                      stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=env)
        cls.url = re.search(r"http://\S+/", cls.server.stdout.readline()).group(0)
        with open(os.path.join(cls.root, "config", "veldra", "serve.token")) as file:
            cls.token = file.read().strip()
        options = webdriver.ChromeOptions()
        for flag in FLAGS + ["--user-data-dir=" + os.path.join(cls.root, "profile")]:
            options.add_argument(flag)
        options.binary_location = shutil.which("chromium") or "/usr/bin/chromium"
        cls.browser = webdriver.Chrome(service=Service(shutil.which("chromedriver") or "/usr/bin/chromedriver"),
                                       options=options)
        cls.wait = WebDriverWait(cls.browser, 20)

    @classmethod
    def million_values(cls, folder):
        """A component whose @@@Label takes several values from a live list of 1,000,000 labels."""
        big = os.path.join(cls.root, "big.db")
        subprocess.run(["sqlite3", big, "CREATE TABLE big AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                        "SELECT i + 1 FROM n LIMIT 1000000) SELECT i, 'row number ' || i AS label FROM n; "
                        "CREATE INDEX big_label ON big (label)"], check=True)
        os.makedirs(os.path.join(cls.root, "config", "veldra"))
        with open(os.path.join(cls.root, "config", "veldra", "datasources.ini"), "w") as file:
            file.write("[Big]\nprovider=SQLite\npath=%s\n" % big)
        with open(os.path.join(os.path.dirname(__file__), "big.component.xml")) as file:
            text = file.read()
        text = (text.replace("@@@From", "@@@Label").replace("<title>From</title>", "<title>Labels</title>")
                .replace("big.i &gt;= @@@Label", "big.label IN (@@@Label)")
                .replace('<Text key="@@@Label">1</Text>', "<Text key=\"@@@Label\">'row number 1'</Text>")
                .replace("</Model>", "</Model>\n <Host>\n  <Parameter name=\"@@@Label\" multiple=\"true\">\n"
                         "   <LiveList table=\"big\" value=\"label\" cache=\"300\"/>\n  </Parameter>\n </Host>"))
        with open(os.path.join(folder, "labels.component.xml"), "w") as file:
            file.write(text)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.server.terminate()
        cls.server.wait(20)
        shutil.rmtree(cls.root, ignore_errors=True)

    def shot(self, name):
        self.browser.save_screenshot(os.path.join(ARGS.screenshots, name + ".png"))

    def texts(self, selector):
        # Read in one go: the page redraws while the test looks.
        return self.browser.execute_script(
            "return [...document.querySelectorAll(arguments[0])].map((e) => e.textContent)", selector)

    def cells(self, column):
        return self.texts("#rows tbody td:nth-child(%d)" % column)

    def bar_titles(self):
        return self.texts("#chart rect title")

    def test_rows_and_chart_follow_the_inputs(self):
        browser, wait = self.browser, self.wait
        browser.get(self.url + "components/sales-by-region")
        token = wait.until(shows.visibility_of_element_located((By.ID, "token-input")))
        self.shot("page-token")
        token.send_keys(self.token)
        browser.find_element(By.CSS_SELECTOR, "#token-form button").click()
        wait.until(lambda _: len(self.cells(1)) == 3)
        self.assertEqual(self.cells(1), ["North East"] * 3)
        self.assertEqual(len(self.bar_titles()), 3)
        before = self.bar_titles()
        self.shot("page-north-east")

        Select(browser.find_element(By.CSS_SELECTOR, "select[data-name='@@@Region']")).select_by_visible_text("South East")
        wait.until(lambda _: self.cells(1) == ["South East"] * 3)
        wait.until(lambda _: self.bar_titles() and self.bar_titles() != before)
        self.assertIn("Retail", " ".join(self.bar_titles()))
        browser.find_element(By.ID, "chart-line").click()
        wait.until(lambda _: browser.find_elements(By.CSS_SELECTOR, "#chart polyline"))
        self.shot("page-south-east-lines")

        date = browser.find_element(By.CSS_SELECTOR, "input[data-name='@@@FromDate']")
        date.send_keys(Keys.CONTROL, "a")
        date.send_keys(Keys.BACKSPACE)
        problem = wait.until(shows.visibility_of_element_located((By.ID, "problem")))
        self.assertIn("@@@FromDate", problem.text)
        self.shot("page-missing-value")

        browser.get(self.url)
        card = wait.until(shows.visibility_of_element_located((By.CSS_SELECTOR, "a.card")))
        self.assertEqual(card.find_element(By.TAG_NAME, "h2").text, "labels")
        self.shot("page-list")

        # A list of a million values: typing narrows it in the engine, several are picked.
        browser.get(self.url + "components/labels")
        wait.until(lambda _: self.cells(2) == ["row number 1"])
        picker = Select(browser.find_element(By.CSS_SELECTOR, "select[data-name='@@@Label']"))
        picker.deselect_by_visible_text("row number 1")
        problem = wait.until(shows.visibility_of_element_located((By.ID, "problem")))
        self.assertIn("@@@Label", problem.text)  # none picked: missing, never IN ()
        search = browser.find_element(By.CSS_SELECTOR, "input[type=search]")
        search.send_keys("number 99999")
        options = "select[data-name='@@@Label'] option:not([disabled])"
        wait.until(lambda _: self.texts(options)[:2] == ["row number 99999", "row number 999990"])
        picker.select_by_visible_text("row number 99999")
        picker.select_by_visible_text("row number 999999")
        wait.until(lambda _: sorted(self.cells(2)) == ["row number 99999", "row number 999999"])
        self.shot("page-million-values")


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--veldra", required=True)
    parser.add_argument("--sample-component", required=True)
    parser.add_argument("--sample-db", required=True)
    parser.add_argument("--screenshots", default=os.getcwd())
    ARGS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)
