"""Asks programs started by tools/on-processor where they may run."""

import os
import subprocess
import sys
import unittest

ON_PROCESSOR = sys.argv.pop(1)


def allowed(number, processors=None):
    """The processors that a program started on the processor with this number may use."""
    script = "import os; print(*sorted(os.sched_getaffinity(0)))"
    command = [ON_PROCESSOR, str(number), sys.executable, "-c", script]
    if processors is not None:
        command = ["taskset", "-c", ",".join(map(str, processors)), *command]
    return [int(word) for word in subprocess.run(command, capture_output=True, check=True).stdout.split()]


class OnProcessor(unittest.TestCase):
    def test_numbers_count_around_the_processors_that_are_allowed(self):
        processors = sorted(os.sched_getaffinity(0))
        for number in range(2 * len(processors)):
            self.assertEqual(allowed(number), [processors[number % len(processors)]])

    def test_a_processor_that_is_not_allowed_is_never_chosen(self):
        last = max(os.sched_getaffinity(0))
        self.assertEqual([allowed(0, [last]), allowed(1, [last])], [[last], [last]])

    def test_the_status_is_that_of_the_command(self):
        self.assertEqual(subprocess.run([ON_PROCESSOR, "0", "sh", "-c", "exit 7"]).returncode, 7)


if __name__ == "__main__":
    unittest.main()
