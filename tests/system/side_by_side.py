"""Tests that mostly wait, run several at a time.

A test file asks for it with `load_tests = side_by_side.load_tests`. Its tests must share nothing;
fixtures of classes and modules are not run.
"""
import concurrent.futures
import unittest

AT_A_TIME = 4


class Record(unittest.TestResult):
    """Notes what is told to it, to tell it to another result later."""

    TOLD = ("startTest", "stopTest", "addSuccess", "addError", "addFailure", "addSkip",
            "addExpectedFailure", "addUnexpectedSuccess", "addSubTest")

    def __init__(self):
        super().__init__()
        self._told = []
        for name in self.TOLD:
            setattr(self, name, self._note(name))

    def _note(self, name):
        return lambda *arguments: self._told.append((name, arguments))

    def tell(self, result):
        for name, arguments in self._told:
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
                running.result().tell(result)
        return result


def load_tests(_loader, tests, _pattern):
    return SideBySide(tests)
