"""Tests that mostly wait, run several at a time.

A test file asks for it with `load_tests = side_by_side.load_tests`. Its tests must share nothing;
fixtures of classes and modules are not run.
"""
import concurrent.futures
import unittest

AT_A_TIME = 4


class Record(unittest.TestResult):
    """Records the calls of a result, to replay them on another result later."""

    CALLS = ("startTest", "stopTest", "addSuccess", "addError", "addFailure", "addSkip",
             "addExpectedFailure", "addUnexpectedSuccess", "addSubTest")

    def __init__(self):
        super().__init__()
        self._calls = []
        for name in self.CALLS:
            setattr(self, name, self._note(name))

    def _note(self, name):
        return lambda *arguments: self._calls.append((name, arguments))

    def replay(self, result):
        for name, arguments in self._calls:
            getattr(result, name)(*arguments)


def run_alone(test):
    record = Record()
    test(record)
    return record


def tests_of(suite):
    for each in suite:
        if isinstance(each, unittest.TestSuite):
            yield from tests_of(each)
        else:
            yield each


class SideBySide(unittest.TestSuite):
    def run(self, result, debug=False):
        with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as pool:
            for running in [pool.submit(run_alone, test) for test in tests_of(self)]:
                running.result().replay(result)
        return result


def load_tests(_loader, tests, _pattern):
    return SideBySide(tests)
