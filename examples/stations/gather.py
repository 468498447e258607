#!/usr/bin/python3
"""Takes the events of every station from an MQTT broker and writes them into the PostgreSQL archive
of archive.sql, each line once. Needs Debian's python3-paho-mqtt and python3-psycopg2.

    python3 gather.py --database "dbname=antenna" --host broker.example --port 8883 \\
        --cafile ca.crt --username gatherer --password-file password

Runs until it is ended, at any moment and by any signal: the broker keeps a message until it is
acknowledged, it is acknowledged after the archive has committed it, and a line that comes twice is
found by its run and number. Any failure ends both connections, and it starts again.
"""
import argparse
import contextlib
import dataclasses
import datetime
import json
import re
import select
import signal
import sys
import time
import typing

import paho.mqtt.client as mqtt
import psycopg2
import psycopg2.errors
from psycopg2.extras import Json, execute_values

TOPIC = "antenna/+/events"
# A batch is committed when no more messages are waiting, or when it is this large.
BATCH_MESSAGES = 1000
BATCH_BYTES = 8_000_000
LINE_BYTES = 1_000_000
TEXT_CHARACTERS = 200
REJECTED_BYTES = 2000
REJECTED_OF_A_STATION = 1000
CLOCK_AHEAD = datetime.timedelta(minutes=5)
KEEPALIVE_SECONDS = 30
PAUSE_SECONDS = 0.5
WRONG_USAGE = 64
PROTOCOL = 1
UUID_7 = re.compile(r"[0-9a-f]{8}-[0-9a-f]{4}-7[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}")
TIME = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z", re.ASCII)
MOST = 2 ** 31 - 1


# A line that no time makes acceptable: its data, a constraint, a limit of the database.
REFUSED_BY_THE_DATABASE = (psycopg2.DataError, psycopg2.IntegrityError,
                           psycopg2.errors.ProgramLimitExceeded,
                           psycopg2.errors.StatementTooComplex)


class Refusal(Exception):
    """Why a message is no line of a run."""


class BrokerAway(Exception):
    """Why there is no session with the broker."""


@dataclasses.dataclass
class Message:
    """What the broker delivered."""
    station: str
    payload: bytes


@dataclasses.dataclass
class Event:
    """One line of a run."""
    message: Message
    run: str
    sequence: int
    type: str
    time: datetime.datetime
    raw: str
    content: dict
    ahead: bool  # its station's clock is
    at: datetime.datetime
    row: tuple = ()  # of ADDITIONS

    @property
    def key(self):
        return self.run, self.sequence


def clean(value):
    """The value with texts that PostgreSQL takes, short enough for an index."""
    if isinstance(value, str):
        return value.replace("\0", "\ufffd").encode("utf-8", "replace").decode()[:TEXT_CHARACTERS]
    if isinstance(value, list):
        return [clean(each) for each in value]
    if isinstance(value, dict):
        return {clean(name): clean(each) for name, each in value.items()}
    return value


def member(content, name, kind, default=None):
    """The member of an object, which must be of this kind; the default when it is missing or null.
    Without a default a missing member is refused."""
    value = content.get(name)
    if value is None and default is not None:
        return default
    if not isinstance(value, kind) or isinstance(value, bool):
        raise Refusal(f"{name} is missing or of a wrong type")
    return clean(value) if isinstance(value, str) else value


def number(content, name, least, most=MOST):
    value = member(content, name, int)
    if not least <= value <= most:
        raise Refusal(f"{name} is not between {least} and {most}")
    return value


def quantity(content, name, default=None):
    value = float(member(content, name, (int, float), default))
    if value in (float("inf"), float("-inf")):
        raise Refusal(f"{name} is too large")
    return value


def moment(content, name):
    text = member(content, name, str)
    if not TIME.fullmatch(text):
        raise Refusal(f"{name} is no time in UTC with milliseconds")
    try:
        return datetime.datetime.fromisoformat(text.replace("Z", "+00:00"))
    except ValueError:
        raise Refusal(f"{name} is no time") from None


def texts(content, name):
    """A member that is an object of texts, or null."""
    value = content.get(name)
    if value is None:
        return None
    if not isinstance(value, dict) or not all(isinstance(each, str) for each in value.values()):
        raise Refusal(f"{name} is no object of texts")
    return Json(clean(value))


def structure(content, name, kind):
    """A member of free content, or null."""
    value = content.get(name)
    if value is None:
        return None
    if not isinstance(value, kind):
        raise Refusal(f"{name} is of a wrong type")
    return Json(clean(value))


def no_number(text):
    raise Refusal(f"{text} is no number of JSON")


def parsed(message, received):
    """The event of a message; Refusal when it is none."""
    if len(message.payload) > LINE_BYTES:
        raise Refusal(f"longer than {LINE_BYTES} bytes")
    try:
        raw = message.payload.decode("utf-8").strip(" \t\r\n")
        content = json.loads(raw, parse_constant=no_number)
    except UnicodeDecodeError:
        raise Refusal("no UTF-8") from None
    except (ValueError, RecursionError) as failure:
        raise Refusal(f"no JSON: {failure}") from None
    if not isinstance(content, dict):
        raise Refusal("no JSON object")
    if "runIdentifier" not in content:
        raise Refusal("runIdentifier is missing: the station's program is too old for the archive")
    run = member(content, "runIdentifier", str)
    if not UUID_7.fullmatch(run):
        raise Refusal("runIdentifier is no UUID of version 7 in lower case")
    stated = moment(content, "time")
    ahead = stated > received + CLOCK_AHEAD
    event = Event(message=message, run=run, sequence=number(content, "sequence", 1),
                  type=member(content, "type", str), time=stated, raw=raw, content=content,
                  ahead=ahead, at=received if ahead else stated)
    if event.type in ADDITIONS:
        event.row = ADDITIONS[event.type].row(event)
    return event


def started_row(event):
    content = event.content
    if event.sequence != 1:
        raise Refusal("sequence of runStarted is not 1")
    if number(content, "protocol", 0) != PROTOCOL:
        raise Refusal(f"protocol is not {PROTOCOL}")
    module = member(content, "module", dict)
    limits = structure(content, "limits", list)
    if limits is not None and not all(isinstance(each, dict) for each in content["limits"]):
        raise Refusal("limits is no list of objects")
    return (event.run, event.time, member(module, "name", str), member(module, "version", str),
            member(module, "build", str), texts(content, "tags"), texts(content, "pc"),
            limits, structure(content, "calibration", (dict, list)))


def ended_row(event):
    return (event.run, moment(event.content, "ended"), event.sequence,
            number(event.content, "exit", 0, 255))


def test_row(event, content, result=None, seconds=None):
    return (event.run, number(event.content, "run", 1), member(content, "test", str),
            member(member(content, "device", dict), "name", str), result, seconds)


def test_ended_row(event):
    result = member(event.content, "result", dict)
    return test_row(event, result, member(result, "result", str), quantity(result, "seconds"))


def measurement_row(event):
    measured = member(event.content, "measurement", dict)
    bounds = [None if measured.get(name) is None else quantity(measured, name)
              for name in ("lowest", "highest")]
    return (event.run, event.sequence, number(event.content, "run", 1), event.at,
            member(measured, "name", str), quantity(measured, "value"),
            member(measured, "unit", str), *bounds,
            member(measured, "brokenLimit", str, "") or None, structure(measured, "limits", list),
            structure(measured, "figures", list))


@dataclasses.dataclass
class Addition:
    """What a type of line adds to the tables: a statement, the template of its values, a row."""
    row: typing.Callable[[Event], tuple]
    statement: str
    template: str = None


TEST = """insert into test (run_identifier, number, name, device, result, seconds) values %s
          on conflict (run_identifier, number) do update
          set result = coalesce(excluded.result, test.result),
              seconds = coalesce(excluded.seconds, test.seconds)"""
# Types that are not here are kept as lines only.
ADDITIONS = {
    "runStarted": Addition(
        started_row,
        """update run set started = v.started, module = v.module, version = v.version,
               build = v.build, tags = v.tags, pc = v.pc, limits = v.limits,
               calibration = v.calibration
           from (values %s) as v (run_identifier, started, module, version, build, tags, pc,
                                  limits, calibration)
           where run.run_identifier = v.run_identifier""",
        "(%s::uuid, %s::timestamptz, %s, %s, %s, %s::jsonb, %s::jsonb, %s::jsonb, %s::jsonb)"),
    "runEnded": Addition(
        ended_row,
        """update run set ended = v.ended, last_sequence = v.last_sequence, exit = v.exit
           from (values %s) as v (run_identifier, ended, last_sequence, exit)
           where run.run_identifier = v.run_identifier""",
        "(%s::uuid, %s::timestamptz, %s::integer, %s::smallint)"),
    "testStarted": Addition(lambda event: test_row(event, event.content), TEST),
    "testEnded": Addition(test_ended_row, TEST),
    "measurement": Addition(
        measurement_row,
        """insert into measurement (run_identifier, sequence, test, at, name, value, unit, lowest,
                                    highest, broken_limit, limits, figures) values %s"""),
}


class Batch:
    """Writes messages into the archive, within the transaction of a cursor."""

    def __init__(self, cursor):
        self._cursor = cursor
        self._received = datetime.datetime.now(datetime.timezone.utc)
        self._rejected = []

    def write(self, messages):
        events = {}
        for message in messages:
            try:
                event = parsed(message, self._received)
            except (Refusal, OverflowError) as refusal:
                self.reject(message, str(refusal))
                continue
            self._check_repeated(event, events.setdefault(event.key, event).raw)
        added = self._add_lines(self._of_own_runs(list(events.values())))
        self._mark_runs({event.run for event in added if event.ahead})
        for kind, addition in ADDITIONS.items():
            # One row a key: a run that says two things of a test has said the later one.
            rows = {event.row[:2]: event.row for event in added if event.type == kind}
            self._values(addition.statement, list(rows.values()), addition.template)
        self._write_rejected()

    def reject(self, message, reason):
        self._rejected.append((message, reason))

    def _values(self, statement, rows, template=None, fetch=False):
        if not rows:
            return []
        return execute_values(self._cursor, statement, rows, template, len(rows), fetch)

    def _check_repeated(self, event, raw):
        if event.raw != raw:
            self.reject(event.message, "another line of this run has the same sequence")

    def _of_own_runs(self, events):
        """The events without those of a run that is another station's."""
        first = {}
        for event in events:
            first.setdefault(event.run, (event.run, event.message.station, self._received))
        self._values("""insert into run (run_identifier, station, first_received) values %s
                        on conflict do nothing""", list(first.values()))
        self._cursor.execute("""select run_identifier::text, station from run
                                where run_identifier = any(%s::uuid[])""", (list(first),))
        owners = dict(self._cursor.fetchall())
        own = [event for event in events if owners[event.run] == event.message.station]
        for event in events:
            if owners[event.run] != event.message.station:
                self.reject(event.message, "the run is another station's")
        return own

    def _add_lines(self, events):
        """Those of the events that were not in the archive."""
        rows = [(*event.key, event.type, event.time, self._received, event.ahead, event.raw)
                for event in events]
        new = set(self._values(
            """insert into line (run_identifier, sequence, type, time, received, clock_ahead, raw)
               values %s on conflict do nothing returning run_identifier::text, sequence""",
            rows, fetch=True))
        repeated = {event.key: event for event in events if event.key not in new}
        for *key, raw in self._values(
                """select line.run_identifier::text, line.sequence, raw from line
                   join (values %s) as v (run_identifier, sequence)
                   on line.run_identifier = v.run_identifier and line.sequence = v.sequence""",
                list(repeated), "(%s::uuid, %s)", fetch=True):
            self._check_repeated(repeated[tuple(key)], raw)
        return [event for event in events if event.key in new]

    def _mark_runs(self, runs):
        if runs:
            self._cursor.execute("""update run set clock_ahead = true
                                    where run_identifier = any(%s::uuid[])""", (list(runs),))

    def _write_rejected(self):
        rows = [(self._received, message.station, clean(reason), len(message.payload),
                 repr(message.payload[:REJECTED_BYTES])[2:-1])
                for message, reason in self._rejected]
        self._values("""insert into rejected (received, station, reason, size, beginning)
                        values %s""", rows)
        if rows:
            self._cursor.execute(
                """delete from rejected where station = any(%s) and id <=
                       (select id from rejected as kept where kept.station = rejected.station
                        order by id desc offset %s limit 1)""",
                (list({row[1] for row in rows}), REJECTED_OF_A_STATION))


def archive(database, messages):
    """Commits the messages. What the archive's types or limits refuse is found by writing one
    message at a time."""
    try:
        with database, database.cursor() as cursor:
            Batch(cursor).write(messages)
    except REFUSED_BY_THE_DATABASE as failure:
        if len(messages) > 1:
            for message in messages:
                archive(database, [message])
            return
        with database, database.cursor() as cursor:
            batch = Batch(cursor)
            batch.reject(messages[0], str(failure))
            batch.write([])


class Session:
    """The gatherer's persistent session with the broker.

    paho writes only when it is asked to, because this program has the network loop (the callback
    for a socket to be written, which is empty, is how paho knows): an acknowledgement therefore
    waits in its queue until acknowledge().
    """

    def __init__(self, options):
        self._messages = []
        self._bytes = 0
        self._failure = None
        self._subscribed = False
        client = mqtt.Client(options.client_id, clean_session=False)
        client.on_socket_register_write = lambda *_: None
        client.on_connect = self._connected
        client.on_subscribe = self._granted
        client.on_message = self._take
        if options.cafile:
            client.tls_set(options.cafile, options.cert, options.key)
        if options.username:
            client.username_pw_set(options.username, options.password)
        client.connect(options.host, options.port, KEEPALIVE_SECONDS)
        self._client = client

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._client.socket():
            self._client.socket().close()  # without what is still in the queue

    def receive(self, seconds):
        """Waits so long for messages; those that are there, up to a batch."""
        self._messages = []
        self._bytes = 0
        while (len(self._messages) < BATCH_MESSAGES and self._bytes < BATCH_BYTES
               and self._readable(0 if self._messages else seconds)):
            self._check(self._client.loop_read())
            if not self._messages:
                self._write()  # the answers of a connection that is being made
        self._check(self._client.loop_misc())
        return self._messages

    def acknowledge(self):
        self._write()

    @property
    def subscribed(self):
        return self._subscribed

    def _write(self):
        while self._client.want_write():
            select.select([], [self._client.socket()], [], KEEPALIVE_SECONDS)
            self._check(self._client.loop_write())

    def _readable(self, seconds):
        connection = self._client.socket()
        pending = getattr(connection, "pending", lambda: 0)()  # of TLS: read, but not by paho
        return pending or select.select([connection], [], [], seconds)[0]

    def _check(self, result):
        if self._failure or result != mqtt.MQTT_ERR_SUCCESS or not self._client.socket():
            raise BrokerAway(self._failure or mqtt.error_string(result))

    def _connected(self, client, _userdata, _flags, result):
        if result == mqtt.CONNACK_ACCEPTED:
            client.subscribe(TOPIC, qos=1)
        else:
            self._failure = mqtt.connack_string(result)

    def _granted(self, _client, _userdata, _mid, granted):
        self._subscribed = True
        if granted[0] == 0x80:
            self._failure = "the subscription is refused"

    def _take(self, _client, _userdata, message):
        self._messages.append(Message(clean(message.topic.split("/")[1]), message.payload))
        self._bytes += len(message.payload)


def gather(options, say):
    """Gathers until a connection fails."""
    with contextlib.closing(psycopg2.connect(options.database)) as database, \
            Session(options) as session:
        session.acknowledge()  # sends the request for a connection
        while True:
            messages = session.receive(1)
            if session.subscribed:
                say("gathering")
            if messages:
                archive(database, messages)
            session.acknowledge()


class Parser(argparse.ArgumentParser):
    """Ends with the value for wrong usage that the stations use."""

    def error(self, message):
        self.exit(WRONG_USAGE, f"{self.prog}: {message}\n")


def read_options():
    parser = Parser(description="Gathers the events of stations in a PostgreSQL archive.")
    parser.add_argument("--database", required=True,
                        help="connection string of PostgreSQL; a password is better in ~/.pgpass")
    parser.add_argument("--host", default="127.0.0.1", help="the broker; default 127.0.0.1")
    parser.add_argument("--port", type=int, default=18883, help="its port; default 18883")
    parser.add_argument("--client-id", default="gatherer",
                        help="name of the session at the broker; default gatherer")
    parser.add_argument("--cafile", help="certificate of the authority; switches TLS on")
    parser.add_argument("--cert", help="this gatherer's certificate")
    parser.add_argument("--key", help="its key")
    parser.add_argument("--username", help="name at the broker")
    parser.add_argument("--password-file", help="file with its password")
    options = parser.parse_args()
    options.password = None
    if options.password_file:
        try:
            with open(options.password_file, encoding="utf-8") as file:
                options.password = file.readline().rstrip("\r\n")
        except (OSError, UnicodeDecodeError) as failure:
            parser.error(f"the password cannot be read: {failure}")
    return options


def main():
    options = read_options()
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    last = ""

    def say(text):
        nonlocal last
        if text != last:
            print(f"gather: {text}", file=sys.stderr, flush=True)
        last = text

    while True:
        try:
            gather(options, say)
        except (psycopg2.Error, BrokerAway, OSError, ValueError) as failure:
            say(" ".join(str(failure).split()))
            time.sleep(PAUSE_SECONDS)


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        pass
