#!/usr/bin/python3
"""The HTTP API of a real `veldra serve` on an ephemeral loopback port, on SQLite and on the
data service tests' throw-away PostgreSQL server: what a client sees, compared with what
`veldra run` says for the same component and inputs."""

import argparse
import http.client
import json
import os
import shutil
import signal
import socket
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse

ARGS = None
SAMPLE = "sales-by-region"
COUNTRY = "sales-by-country"  # live lists that follow each other, several regions, a moving date
HOSTILE_DATES = [
    # (value given for @@@FromDate, status): the data service's guards, reached through HTTP
    ("'2023-01-01'; DELETE FROM orders", 422),
    ("'2023-01-01' AND length(zeroblob(500000000)) > 0", 422),
    ("'2023-01-01' AND 1 = (SELECT count(*) FROM sqlite_master)", 422),
    ("'2023-01-01') UNION SELECT name, sql, 1, 1 FROM sqlite_master --", 422),
    ("'2023-01-01' AND (WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r) "
     "SELECT max(n) FROM r) > 0", 504),
]


def quoted(inputs):
    return urllib.parse.urlencode(inputs, quote_via=urllib.parse.quote)


class Server:
    """veldra serve on a folder of its own, with its own configuration."""

    def __init__(self, folder, config_home, *options):
        self.log = os.path.join(folder, "..", "access-%d.log" % id(self))
        self.process = subprocess.Popen(
            [ARGS.veldra, "serve", folder, "--port", "0", "--access-log", self.log, *options],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            env=dict(os.environ, XDG_CONFIG_HOME=config_home, VELDRA_LANG="en"))
        first = self.process.stdout.readline()
        if "http://" not in first:
            raise RuntimeError("veldra serve did not start: " + first + self.process.stderr.read())
        self.port = int(first.split("http://127.0.0.1:")[1].split("/")[0])
        self.process.stdout.readline()
        with open(os.path.join(config_home, "veldra", "serve.token")) as file:
            self.token = file.read().strip()

    def connect(self, timeout=20):
        return http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)

    def get(self, path, token=True, headers=None, method="GET"):
        connection = self.connect()
        sent = dict(headers or {})
        if token:
            sent["Authorization"] = "Bearer " + (self.token if token is True else token)
        connection.request(method, path, headers=sent)
        response = connection.getresponse()
        body = response.read()
        connection.close()
        return response.status, dict(response.getheaders()), body

    def rows(self, component, inputs=(), **kw):
        query = quoted(list(inputs))
        return self.get("/api/components/%s/rows%s" % (component, "?" + query if query else ""), **kw)

    def stop(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            self.process.wait(30)


def run_cli(config_home, document, inputs, format_="json", option="--set", extra=()):
    arguments = [ARGS.veldra, "run", "--format", format_, document, *extra]
    for name, value in inputs:
        arguments += [option, "%s=%s" % (name, value)]
    done = subprocess.run(arguments, capture_output=True, env=dict(os.environ, XDG_CONFIG_HOME=config_home,
                                                                   VELDRA_LANG="en"))
    return done.returncode, done.stdout, done.stderr.decode()


def pg_state():
    path = os.environ.get("VELDRA_TEST_PG", "")
    state = {}
    if os.path.exists(path):
        with open(path) as file:
            for line in file:
                if "=" in line:
                    key, value = line.strip().split("=", 1)
                    state[key] = value
    return state


class Fixture:
    """A folder with the sample component, a large one and (when PostgreSQL runs) the sample
    on PostgreSQL, and a configuration whose Sample data source stops statements after 1 s."""

    def __init__(self):
        self.root = tempfile.mkdtemp(prefix="veldra-serve-test.")
        self.folder = os.path.join(self.root, "components")
        self.config = os.path.join(self.root, "config")
        os.makedirs(self.folder)
        os.makedirs(os.path.join(self.config, "veldra"))
        shutil.copy(ARGS.sample_component, self.folder)
        shutil.copy(os.path.join(os.path.dirname(ARGS.sample_component), COUNTRY + ".component.xml"), self.folder)
        shutil.copy(os.path.join(os.path.dirname(__file__), "big.component.xml"), self.folder)
        big = os.path.join(self.root, "big.db")
        subprocess.run(["sqlite3", big, "CREATE TABLE big AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                        "SELECT i + 1 FROM n LIMIT 1000000) SELECT i, 'row number ' || i AS label FROM n"], check=True)
        ini = ["[Sample]", "provider=SQLite", "path=" + ARGS.sample_db, "timeout=1",
               "[Big]", "provider=SQLite", "path=" + big, "rowcap=1000000"]
        self.pg = pg_state()
        if "port" in self.pg:
            ini += ["[Shared]", "provider=PostgreSQL", "host=" + self.pg["host"], "port=" + self.pg["port"],
                    "user=" + self.pg["reader"], "dbname=" + self.pg["dbname"], "catalogs=sales", "pool_size=2",
                    "catalog.main=sales"]
            with open(ARGS.sample_component) as file:
                text = file.read()
            text = (text.replace("<provider>SQLite</provider>", "<provider>PostgreSQL</provider>")
                    .replace("<dsn>Sample</dsn>", "<dsn>Shared</dsn>").replace("<catalog>main</catalog>",
                                                                               "<catalog>sales</catalog>"))
            with open(os.path.join(self.folder, "shared.component.xml"), "w") as file:
                file.write(text)
        with open(os.path.join(self.config, "veldra", "datasources.ini"), "w") as file:
            file.write("\n".join(ini) + "\n")

    def document(self, name):
        return os.path.join(self.folder, name + ".component.xml")

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)


class Api(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.fixture = Fixture()
        cls.server = Server(cls.fixture.folder, cls.fixture.config, "--workers", "2")

    @classmethod
    def tearDownClass(cls):
        cls.server.stop()
        cls.fixture.remove()

    def components(self):
        status, _, body = self.server.get("/api/components")
        self.assertEqual(status, 200)
        return {c["name"]: c for c in json.loads(body)["components"]}

    def test_listing_offers_the_inputs_the_pad_offers(self):
        sample = self.components()[SAMPLE]
        self.assertEqual(sample["inputs"]["selection"]["items"], ["Region", "Segment", "Orders", "Revenue"])
        region, from_date = sample["parameters"]
        self.assertEqual((region["name"], region["kind"], region["value"]), ("@@@Region", "list", "'NE'"))
        self.assertEqual(region["choices"][2], {"value": "'SE'", "label": "South East"})
        self.assertEqual((from_date["kind"], from_date["title"]), ("typed", "Orders from ('YYYY-MM-DD')"))
        self.assertEqual(sample["slots"], ["selection", "UpdateRequest", "@@@Region", "@@@FromDate"])
        self.assertNotIn("TopN", sample["inputs"])  # the row count is fixed in the wizard

    def test_rows_are_the_bytes_veldra_run_prints(self):
        names = [SAMPLE] + (["shared"] if self.fixture.pg else [])
        inputs = [("@@@Region", "'SE'"), ("selection", "Segment,Revenue")]
        for name in names:
            for format_ in ("json", "csv"):
                with self.subTest(component=name, format=format_):
                    status, headers, body = self.server.rows(name, inputs + [("format", format_)])
                    code, printed, _ = run_cli(self.fixture.config, self.fixture.document(name), inputs, format_)
                    self.assertEqual((status, code), (200, 0))
                    self.assertEqual(body, printed)
                    self.assertIn("csv" if format_ == "csv" else "json", headers["Content-Type"])
        status, headers, body = self.server.rows(SAMPLE, headers={"Accept": "text/csv"})
        self.assertTrue(body.startswith(b"Region,Segment,Orders,Revenue\r\n"), body)

    def test_a_request_never_sees_the_inputs_of_the_one_before(self):
        _, _, south = self.server.rows(SAMPLE, [("@@@Region", "'SE'"), ("selection", "Region")])
        _, _, plain = self.server.rows(SAMPLE)
        self.assertIn(b"South East", south)
        self.assertEqual(json.loads(plain)["columns"], ["Region", "Segment", "Orders", "Revenue"])
        self.assertIn(b"North East", plain)

    def test_bad_inputs_get_400_with_the_reason_veldra_run_gives(self):
        for inputs in ([("Bogus", "1")], [("selection", "Region,Nope")], [("TopN", "5")]):
            with self.subTest(inputs=inputs):
                status, _, body = self.server.rows(SAMPLE, inputs)
                code, _, said = run_cli(self.fixture.config, self.fixture.document(SAMPLE), inputs)
                self.assertEqual((status, code), (400, 2))
                self.assertIn("veldra run: " + json.loads(body)["reason"], said)
        status, _, body = self.server.rows(SAMPLE, [("@@@FromDate", " ")])
        self.assertEqual(status, 400)
        self.assertIn("@@@FromDate (\"Orders from ('YYYY-MM-DD')\") has no value", json.loads(body)["reason"])
        self.assertEqual(self.server.rows(SAMPLE, [("format", "xml")])[0], 400)

    def test_parameter_settings_as_veldra_run_takes_them(self):
        region = {p["name"]: p for p in self.components()[COUNTRY]["parameters"]}["@@@Region"]
        self.assertEqual((region["live"], region["multiple"], region["dependsOn"]), (True, True, ["@@@Country"]))
        self.assertEqual([c["label"] for c in region["choices"]][:2], ["Central", "North East"])
        picks = [("@@@Region", "Central"), ("@@@Region", "'SW'")]
        status, _, body = self.server.rows(COUNTRY, picks + [("format", "csv")])
        code, printed, _ = run_cli(self.fixture.config, self.fixture.document(COUNTRY), picks, "csv", "--pick")
        self.assertEqual((status, code, body), (200, 0, printed))
        self.assertEqual(body.count(b"\r\n"), 6)
        # The regions follow the country; a region it does not hold gives way.
        _, _, body = self.server.rows(COUNTRY, [("@@@Country", "'Brevonia'")])
        self.assertEqual({row[0] for row in json.loads(body)["rows"]}, {"Overseas"})
        # The search narrows in the engine; what is typed is text, never SQL.
        for search, labels in (("WEST", ["North West", "South West"]), ("%", []), ("' OR '1'='1", [])):
            status, _, body = self.server.get("/api/components/%s/lists/@@@Region?%s" % (
                COUNTRY, quoted([("search", search), ("@@@Country", "'Avaland'")])))
            self.assertEqual((status, [c["label"] for c in json.loads(body)["choices"]]), (200, labels))
        status, _, body = self.server.rows(COUNTRY, [("@@@Region", "")])
        self.assertEqual(status, 400)
        self.assertIn("@@@Region (\"Region\") has no value", json.loads(body)["reason"])

    def test_a_folder_runs_on_another_data_source(self):
        if not self.fixture.pg:
            self.skipTest("no PostgreSQL server (see tests/dataservice/pgserver.sh)")
        server = Server(self.fixture.folder, self.fixture.config, "--source", "Shared")
        try:
            status, _, body = server.rows(COUNTRY, [("format", "csv")])
            code, printed, _ = run_cli(self.fixture.config, self.fixture.document(COUNTRY), [], "csv",
                                       extra=("--source", "Shared"))
            self.assertEqual((status, code, body), (200, 0, printed))
            self.assertIn(b"400425.50", body)  # PostgreSQL's NUMERIC, not SQLite's 400425.5
            status, _, body = server.get("/api/components/%s/sql?engine=true" % COUNTRY)
            self.assertIn(b'FROM "sales"."regions"', body)
        finally:
            server.stop()

    def test_hostile_values_get_the_refusals_veldra_run_gives(self):
        for value, expected in HOSTILE_DATES:
            with self.subTest(value=value):
                started = time.monotonic()
                status, _, body = self.server.rows(SAMPLE, [("@@@FromDate", value)])
                self.assertEqual(status, expected, body)
                self.assertLess(time.monotonic() - started, 6)
                _, _, said = run_cli(self.fixture.config, self.fixture.document(SAMPLE), [("@@@FromDate", value)])
                self.assertIn("veldra run: " + json.loads(body)["reason"], said)
        _, _, body = self.server.rows(SAMPLE)
        self.assertIn(b"North East", body)  # the database is as it was

    def test_not_found_and_not_allowed(self):
        self.assertEqual(self.server.rows("nothing-here")[0], 404)
        self.assertEqual(self.server.get("/api/nowhere")[0], 404)
        status, headers, _ = self.server.get("/api/components", method="POST")
        self.assertEqual((status, headers.get("Allow")), (405, "GET, HEAD"))
        status, _, body = self.server.get("/api/components/%s/sql" % SAMPLE)
        self.assertEqual(status, 200)
        self.assertIn(b"regions.code = @@@Region", body)

    def test_the_token_goes_in_the_authorization_header_only(self):
        status, headers, _ = self.server.get("/api/components", token=False)
        self.assertEqual((status, headers.get("WWW-Authenticate")), (401, 'Bearer realm="veldra"'))
        self.assertEqual(self.server.get("/api/components", token="x" * len(self.server.token))[0], 401)
        self.assertEqual(self.server.get("/api/components", token=self.server.token[:-1])[0], 401)
        self.assertEqual(self.server.get("/api/components", token=self.server.token + "x")[0], 401)
        self.assertEqual(self.server.get("/api/components?token=" + self.server.token)[0], 401)
        status, _, page = self.server.get("/", token=False)
        self.assertEqual(status, 200)
        self.assertIn(b"/assets/app.js", page)
        mode = os.stat(os.path.join(self.fixture.config, "veldra", "serve.token")).st_mode
        self.assertEqual(stat.S_IMODE(mode), 0o600)
        with open(self.server.log) as log:
            text = log.read()
        self.assertNotIn(self.server.token, text)
        self.assertNotIn("@@@Region=", text)  # paths without query values
        self.assertNotIn("Brevonia", text)
        self.assertRegex(text, r"GET /api/components/%s/rows 200 \d+ms rows=3 bytes=\d+" % SAMPLE)

    def test_files_added_changed_and_removed_are_seen_while_running(self):
        added = self.fixture.document("added")
        shutil.copy(self.fixture.document(SAMPLE), added)
        self.assertTrue(self.eventually(lambda: "added" in self.components()))
        with open(added) as file:
            text = file.read().replace("<Text key=\"@@@Region\">'NE'</Text>", "<Text key=\"@@@Region\">'SW'</Text>")
        with open(added, "w") as file:
            file.write(text)
        self.assertTrue(self.eventually(lambda: b"South West" in self.server.rows("added")[2]))
        os.remove(added)
        self.assertTrue(self.eventually(lambda: self.server.rows("added")[0] == 404))

    def test_a_database_file_replaced_or_changed_while_running_is_read_anew(self):
        big = os.path.join(self.fixture.root, "big.db")
        first = [("@@@From", "1"), ("format", "csv")]
        self.assertTrue(self.server.rows("big", first)[2].startswith(b"i,label\r\n1,row number 1\r\n"))
        subprocess.run(["sqlite3", big, "UPDATE big SET label = 'changed' WHERE i = 1"], check=True)
        self.assertIn(b"\r\n1,changed\r\n", self.server.rows("big", first)[2])
        replacement = big + ".new"
        subprocess.run(["sqlite3", replacement, "CREATE TABLE big (i INTEGER, label TEXT, extra TEXT); "
                        "INSERT INTO big VALUES (1, 'replaced', 'x')"], check=True)
        os.replace(replacement, big)
        self.assertEqual(self.server.rows("big", first)[2], b"i,label\r\n1,replaced\r\n")

    def test_postgresql_never_holds_more_connections_than_its_pool(self):
        if not self.fixture.pg:
            self.skipTest("no PostgreSQL server (see tests/dataservice/pgserver.sh)")
        seen = []

        def count():
            done = subprocess.run(["psql", "-X", "-A", "-t", "-h", self.fixture.pg["host"], "-p", self.fixture.pg["port"],
                                   "-U", self.fixture.pg["user"], "-d", self.fixture.pg["dbname"], "-c",
                                   "SELECT count(*) FROM pg_stat_activity WHERE application_name = 'veldra-dataservice'"],
                                  capture_output=True, text=True)
            seen.append(int(done.stdout.strip() or 0))

        clients = [threading.Thread(target=self.server.rows, args=("shared", [("@@@Region", "'CE'")])) for _ in range(12)]
        for client in clients:
            client.start()
        while any(client.is_alive() for client in clients):
            count()
        for client in clients:
            client.join()
        count()
        self.assertLessEqual(max(seen), 2)
        self.assertGreaterEqual(max(seen), 1)

    @staticmethod
    def eventually(check, seconds=5):
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            if check():
                return True
            time.sleep(0.2)
        return False


class Limits(unittest.TestCase):
    """One worker and no queue, so that what holds a worker shows."""

    @classmethod
    def setUpClass(cls):
        cls.fixture = Fixture()
        config = os.path.join(cls.fixture.root, "serve.ini")
        with open(config, "w") as file:
            file.write("workers=1\nqueue=0\ngrace=5\nkeep_alive=1\n")
        cls.server = Server(cls.fixture.folder, cls.fixture.config, "--config", config)

    @classmethod
    def tearDownClass(cls):
        cls.server.stop()
        cls.fixture.remove()

    def wait_until_idle(self):
        deadline = time.monotonic() + 10
        while self.server.rows(SAMPLE)[0] != 200:
            self.assertLess(time.monotonic(), deadline, "the worker stayed busy")
            time.sleep(0.1)

    def start_stream(self, first=1):
        """A raw connection that asked for the rows of big from first on as CSV (25 MB for all
        of them) and read only the head."""
        connection = socket.socket()
        connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        connection.connect(("127.0.0.1", self.server.port))
        connection.sendall(("GET /api/components/big/rows?format=csv&%%40%%40%%40From=%d HTTP/1.1\r\nHost: x\r\n"
                            "Authorization: Bearer %s\r\n\r\n" % (first, self.server.token)).encode())
        head = connection.recv(4096)
        self.assertIn(b"200 OK", head)
        self.assertIn(b"Transfer-Encoding: chunked", head)
        return connection

    def test_a_client_that_leaves_mid_stream_frees_the_worker(self):
        connection = self.start_stream()
        time.sleep(0.5)
        self.assertEqual(self.server.rows(SAMPLE)[0], 503)  # the one worker streams
        connection.close()
        self.wait_until_idle()
        # A HEAD request reads no body at all.
        self.assertEqual(self.server.get("/api/components/big/rows?format=csv", method="HEAD")[0], 200)
        self.wait_until_idle()

    def test_overload_gets_503_with_retry_after(self):
        self.wait_until_idle()
        slow = threading.Thread(target=self.server.rows, args=(SAMPLE, [("@@@FromDate", HOSTILE_DATES[-1][0])]))
        slow.start()
        time.sleep(0.3)
        status, headers, body = self.server.rows(SAMPLE)
        slow.join()
        self.assertEqual((status, headers.get("Retry-After")), (503, "1"), body)

    def test_sigterm_lets_the_answer_in_flight_finish(self):
        connection = self.start_stream(first=800001)
        time.sleep(0.3)
        self.server.process.send_signal(signal.SIGTERM)
        time.sleep(0.3)
        refused = self.server.rows(SAMPLE)[0] if self.port_open() else 503
        self.assertEqual(refused, 503)
        received = b""
        while True:
            part = connection.recv(65536)
            if not part:
                break
            received += part
        self.assertTrue(received.endswith(b"\r\n0\r\n\r\n"), "the stream was cut")
        self.assertIn(b"1000000,row number 1000000", received)
        self.assertEqual(self.server.process.wait(15), 0)

    def port_open(self):
        try:
            socket.create_connection(("127.0.0.1", self.server.port), timeout=1).close()
            return True
        except OSError:
            return False


class Starting(unittest.TestCase):
    def test_a_non_loopback_address_needs_a_token_file_of_ones_own(self):
        with tempfile.TemporaryDirectory() as home:
            done = subprocess.run([ARGS.veldra, "serve", home, "--listen", "0.0.0.0"], capture_output=True, text=True,
                                  env=dict(os.environ, XDG_CONFIG_HOME=home, VELDRA_LANG="en"), timeout=20)
            self.assertEqual(done.returncode, 2)
            self.assertIn("0.0.0.0 is not a loopback address", done.stderr)
            token = os.path.join(home, "token")
            with open(os.open(token, os.O_WRONLY | os.O_CREAT, 0o644), "w") as file:
                file.write("a-token-others-may-read-0123456789\n")
            os.chmod(token, 0o644)
            done = subprocess.run([ARGS.veldra, "serve", home, "--token-file", token], capture_output=True, text=True,
                                  env=dict(os.environ, XDG_CONFIG_HOME=home, VELDRA_LANG="en"), timeout=20)
            self.assertEqual(done.returncode, 2)
            self.assertIn("others may read it", done.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--veldra", required=True)
    parser.add_argument("--sample-component", required=True)
    parser.add_argument("--sample-db", required=True)
    ARGS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0]] + rest, verbosity=2)
