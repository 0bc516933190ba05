"""Runs the probes of tests/mac, each in a process group of its own that ends with it."""
import json
import os
import platform
import shutil
import signal
import subprocess
import sys
import tempfile
from datetime import date

from mac_assumptions import NOT_SHOWN, PROBES, VERDICTS, source_of

ON_A_MAC = sys.platform == 'darwin'
SIMULATED = 'simulated'
OUTPUT_MAX = 400  # characters of what a probe that failed had said


class Failed(Exception):
    """Why a probe has no answer."""


def command_output(*words):
    if shutil.which(words[0]) is None:
        return ''
    return subprocess.run(words, capture_output=True, text=True, check=False).stdout.strip()


def this_machine():
    """What is said of every answer: version, hardware and day."""
    return {'version': command_output('sw_vers', '-productVersion') if ON_A_MAC else SIMULATED,
            'hardware': command_output('sysctl', '-n', 'hw.model') if ON_A_MAC
            else f'{platform.system()} {platform.machine()}',
            'date': date.today().isoformat()}


def last_words(text):
    return ' '.join(text.split())[-OUTPUT_MAX:]


def end_group(process):
    """Ends a probe with all that it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def output_of(command, seconds, environment):
    """What the command writes; Failed when it ends badly, or not in time."""
    # Files, and no pipes: those would stay open in whatever it has started.
    with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
        try:
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output,
                                       stderr=errors, start_new_session=True, env=environment)
        except OSError as error:
            raise Failed(f'it cannot be started: {error.strerror}') from error
        try:
            process.wait(timeout=seconds)
        except subprocess.TimeoutExpired as error:
            raise Failed(f'no answer within {seconds} seconds') from error
        finally:
            end_group(process)
            process.wait()
        if process.returncode != 0:
            end = f'status {process.returncode}' if process.returncode > 0 \
                else signal.Signals(-process.returncode).name
            raise Failed(f'it ended with {end}: {last_words(text_in(errors))}')
        return text_in(output)


def text_in(file):
    file.seek(0)
    return file.read().decode(errors='replace')


def answer_in(output, assumption):
    """The verdict and the evidence that a probe has written for this assumption."""
    for line in reversed(output.splitlines()):
        try:
            answer = json.loads(line)
        except ValueError:
            continue
        if isinstance(answer, dict) and answer.get('assumption') == assumption \
                and answer.get('verdict') in VERDICTS and isinstance(answer.get('evidence'), dict):
            return answer['verdict'], answer['evidence']
    raise Failed(f'it gave no answer: {last_words(output)}')


class Runner:
    """Builds and runs probes of the project at `root`, once built in `folder`."""

    def __init__(self, root, folder, environment):
        self._root, self._folder, self._environment = root, folder, environment
        self._built = {}

    def answer(self, assumption, probe):
        """Verdict and evidence; Failed when the probe has none."""
        source = source_of(self._root, probe.name)
        if not ON_A_MAC and not probe.speaks_through_driver:
            raise Failed('only a Mac can be asked')
        if source.suffix == '.py':
            command = [sys.executable, '-B', str(source)]
        else:
            self._build(probe.name)
            command = [str(self._folder / probe.name)]
        return answer_in(output_of([*command, assumption.id], probe.seconds, self._environment),
                         assumption.id)

    def _build(self, name):
        """Each by itself: one that does not build costs no other its answer."""
        if name not in self._built:
            self._built[name] = self._problem_of_building(name)
        if self._built[name]:
            raise Failed(f'it does not build: {self._built[name]}')

    def _problem_of_building(self, name):
        steps = [['cmake', '--build', str(self._folder), '--target', name]]
        if not (self._folder / 'CMakeCache.txt').exists():
            steps.insert(0, ['cmake', '-S', str(self._root / PROBES), '-B', str(self._folder),
                             '-DCMAKE_BUILD_TYPE=Release'])
        for step in steps:
            done = subprocess.run(step, capture_output=True, text=True, check=False)
            if done.returncode != 0:
                return last_words(done.stdout + done.stderr) or 'cmake has failed'
        return ''


def failed_answer(reason):
    return NOT_SHOWN, {'why': str(reason)}
