#!/usr/bin/env python3
"""Runs zpp-resample on generated recordings. Usage: resample_test.py PROGRAM"""
import array
import math
import os
import pathlib
import pty
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import wave

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
SANITIZED = b"__asan_init" in PROGRAM.read_bytes()
AMPLITUDE = 0.5
# Runs a command and prints the most memory that it had, in KiB. (A child of the test itself might count the test's.)
LAUNCHER = ("import resource, subprocess, sys; subprocess.run(sys.argv[1:], check=True); "
            "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")


def tone(frequency, rate, count):
    return [AMPLITUDE * math.sin(2 * math.pi * frequency * n / rate) for n in range(count)]


def decibels(samples):
    """The level of the samples beside that of a tone of the amplitude."""
    power = sum(x * x for x in samples) / len(samples)
    return 10 * math.log10(power / (AMPLITUDE**2 / 2) + 1e-20)


def level(samples, frequency, rate):
    """Of the tone alone, in dB: its part under a window that nothing far from it reaches."""
    window = [0.5 - 0.5 * math.cos(2 * math.pi * n / len(samples)) for n in range(len(samples))]
    angle = 2 * math.pi * frequency / rate
    re = sum(w * x * math.cos(angle * n) for n, (w, x) in enumerate(zip(window, samples)))
    im = sum(w * x * math.sin(angle * n) for n, (w, x) in enumerate(zip(window, samples)))
    return 20 * math.log10(2 * math.hypot(re, im) / sum(window) / AMPLITUDE)


def wave_coding(path):
    """The format tag and the bits of a sample of a WAV file."""
    data = path.read_bytes()
    tag, = struct.unpack_from("<H", data, data.index(b"fmt ") + 8)
    return tag, struct.unpack_from("<H", data, data.index(b"fmt ") + 22)[0]


class Resample(unittest.TestCase):

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.dir = pathlib.Path(directory.name)

    def write(self, name, rate, *channels, width=4):
        full = 2 ** (8 * width - 1) - 1
        with wave.open(str(self.dir / name), "wb") as file:
            file.setparams((len(channels), width, rate, 0, "NONE", ""))
            samples = [round(full * x) for frame in zip(*channels) for x in frame]
            file.writeframes(array.array({2: "h", 4: "i"}[width], samples).tobytes())
        return self.dir / name

    def write_float(self, name, rate, samples):
        values = struct.pack(f"<{len(samples)}f", *samples)
        header = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(values), b"WAVE", b"fmt ", 16, 3, 1, rate, 4 * rate, 4,
                             32, b"data", len(values))
        (self.dir / name).write_bytes(header + values)
        return self.dir / name

    def read(self, path):
        """The channels of a WAV file of 16 or 32 bits, at full scale 1."""
        with wave.open(str(path)) as file:
            count, width = file.getnchannels(), file.getsampwidth()
            samples = array.array({2: "h", 4: "i"}[width], file.readframes(file.getnframes()))
        return [[x / 2 ** (8 * width - 1) for x in samples[channel::count]] for channel in range(count)]

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=120)

    def convert(self, source, rate, name="out.wav", message=""):
        done = self.run_program(source, self.dir / name, rate)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", message))
        return self.dir / name

    def resampled(self, rate, to, *channels):
        converted = self.read(self.convert(self.write("in.wav", rate, *channels), to))
        self.assertEqual([len(channel) for channel in converted],
                         [math.floor(len(channel) * to / rate + 0.5) for channel in channels])
        return converted

    def test_tones_keep_level_and_time_and_leave_no_images(self):
        """Each in a channel of its own, which also shows that the channels keep apart."""
        for rate, to in ((48000, 44100), (44100, 48000), (48000, 8000), (8000, 48000), (44100, 44101), (44101, 44100),
                         (44099, 192000), (192000, 44099), (8000, 25), (25, 8000)):
            nyquist = min(rate, to) / 2
            frequencies = [0.9 * nyquist, 0.1 * nyquist, 0.5 * nyquist] + [1000] * (nyquist > 1000)
            # Beyond the reach of the filter, 64 samples of the lower rate, on both sides of 200 of them.
            reach, count = math.ceil(70 * to / (2 * nyquist)), math.ceil(340 * rate / (2 * nyquist))
            with self.subTest(rate=rate, to=to):
                outputs = self.resampled(rate, to, *(tone(f, rate, count) for f in frequencies))
                for frequency, output in zip(frequencies, outputs):
                    middle = slice(reach, len(output) - reach)
                    expected = tone(frequency, to, len(output))
                    self.assertAlmostEqual(level(output[middle], frequency, to),
                                           level(expected[middle], frequency, to), delta=0.05)
                    other = [a - b for a, b in zip(output[middle], expected[middle])]
                    self.assertLess(decibels(other), -80, frequency)

    def test_aliases_are_rejected(self):
        """Tones from just above half the output's rate to half the input's: nothing of them may be left."""
        for rate, to in ((48000, 44100), (48000, 8000), (44100, 11025), (96000, 44101), (192000, 44099)):
            low, high = to / 2, rate / 2
            frequencies = [low + (high - low) * part for part in (0.0001, 0.01, 0.03, 0.1, 0.2, 0.5, 0.7, 0.99)]
            count = math.ceil(340 * rate / to)
            with self.subTest(rate=rate, to=to):
                for frequency, output in zip(frequencies, self.resampled(
                        rate, to, *(tone(f, rate, count) for f in frequencies))):
                    self.assertLess(decibels(output[70:-70]), -80, frequency)

    def test_lengths(self):
        for rate, to in ((48000, 44100), (44100, 48000), (44099, 192000), (192000, 44099)):
            for count in (0, 1, 2, 7, 4801):
                with self.subTest(rate=rate, to=to, count=count):
                    self.resampled(rate, to, [0.25] * count)

    def test_containers(self):
        """There and back: what comes is the tone still."""
        source = self.write("in.wav", 48000, tone(1000, 48000, 24000), tone(400, 48000, 24000), width=2)
        for name, magic, loss in (("a.wav", b"RIFF", -75), ("a.flac", b"fLaC", -75), ("a.aiff", b"FORM", -75),
                                  ("a.AIF", b"FORM", -75), ("a.au", b".snd", -75), ("a.w64", b"riff", -75),
                                  ("a.rf64", b"RF64", -75), ("a.caf", b"caff", -75), ("a.voc", b"Creative", -75),
                                  ("a.ogg", b"OggS", -25), ("a.opus", b"OggS", -20)):
            with self.subTest(name):
                there = self.convert(source, 16000, name)
                self.assertEqual(there.read_bytes()[:len(magic)], magic)
                back = self.read(self.convert(there, 48000, "back.wav"))
                for frequency, channel in zip((1000, 400), back):
                    self.assertAlmostEqual(len(channel), 24000, delta=2)
                    expected = tone(frequency, 48000, len(channel))
                    error = [a - b for a, b in zip(channel[6000:-6000], expected[6000:-6000])]
                    self.assertLess(decibels(error), loss)
        self.assertIn(b"OpusHead", (self.dir / "a.opus").read_bytes()[:100])

    def test_coding_is_kept_where_the_container_has_it(self):
        floats = self.write_float("float.wav", 48000, tone(1000, 48000, 4800))
        self.assertEqual(wave_coding(self.convert(floats, 44100)), (3, 32))
        for width in (2, 4):
            source = self.write("int.wav", 48000, tone(1000, 48000, 4800), width=width)
            self.assertEqual(wave_coding(self.convert(source, 44100)), (1, 8 * width))
            self.assertEqual(wave_coding(self.convert(self.convert(source, 44100, "a.w64"), 48000)), (1, 8 * width))
        for source, bits in ((floats, 24), (self.write("int.wav", 48000, [0.1] * 4800, width=2), 16)):
            stream = self.convert(source, 44100, "a.flac").read_bytes()
            self.assertEqual((int.from_bytes(stream[18:26], "big") >> 36 & 31) + 1, bits)

    def test_clipping_is_counted(self):
        square = [math.copysign(0.999, math.sin(n / 20)) for n in range(9600)]
        floats = self.convert(self.write_float("float.wav", 48000, square), 44100).read_bytes()
        values = array.array("f", floats[floats.index(b"data") + 8:][:4 * 8820])
        self.assertEqual(len(values), 8820)
        for name, bits in (("a.flac", 24), ("a.voc", 16)):
            full = 2 ** (bits - 1)
            beyond = sum(x * full >= full - 0.5 or x * full < -full - 0.5 for x in values)
            self.assertGreater(beyond, 1000)
            self.convert(self.dir / "float.wav", 44100, name,
                         f"zpp-resample: {beyond} values were beyond full scale and have been clipped\n")
        done = self.run_program(self.write("int.wav", 48000, square, width=2), self.dir / "clipped.wav", 96000)
        self.assertRegex(done.stderr, "beyond full scale")
        samples, = self.read(self.dir / "clipped.wav")
        self.assertEqual((max(samples), min(samples)), (32767 / 32768, -1))

    def test_values_that_are_no_numbers_become_silence(self):
        source = self.write_float("float.wav", 48000, [math.nan, math.inf, -math.inf, 0.0] * 100)
        out = self.convert(source, 24000, "a.wav",
                           "zpp-resample: 300 values were infinite or no numbers and have been read as 0\n").read_bytes()
        self.assertFalse(any(out[out.index(b"data") + 8:][:4 * 200]))

    def assert_refused(self, message, *arguments, status=1):
        done = self.run_program(*arguments)
        self.assertEqual((done.returncode, done.stdout), (status, ""), done.stderr)
        self.assertRegex(done.stderr, rf"^zpp-resample: .*{message}.*\n$")

    def test_what_cannot_be_converted_is_refused(self):
        source, out = self.write("in.wav", 48000, tone(1000, 48000, 48000), width=2), self.dir / "out.wav"
        whole = source.read_bytes()
        flac = self.convert(source, 44100, "whole.flac").read_bytes()
        (self.dir / "cut.flac").write_bytes(flac[:len(flac) // 2])
        (self.dir / "text.wav").write_text("This is no recording. " * 10)
        (self.dir / "link.wav").symlink_to(source)
        self.write("many.wav", 48000, *[[0.0] * 10] * 9)
        self.write("slow.wav", 1, [0.0] * 30000, width=2)
        (self.dir / "kept.wav").write_text("An older file.")
        for message, *arguments in (("absent.wav: cannot be read: .*No such file", "absent.wav", out, 8000),
                                    ("text.wav: cannot be read: ", "text.wav", out, 8000),
                                    (r"cut.flac: (?:cannot be read|ends after)", "cut.flac", out, 8000),
                                    ("48000 samples a second already", source, out, 48000),
                                    ("in.wav: is the file to be read", source, source, 8000),
                                    ("link.wav: is the file to be read", source, "link.wav", 8000),
                                    ("no known format", source, "out.txt", 8000),
                                    ("no known format", source, "out", 8000),
                                    ("missing/out.wav: cannot be written: ", source, "missing/out.wav", 8000),
                                    ("does not take 9 channels", "many.wav", "out.flac", 8000),
                                    ("out.opus: cannot be written", source, "out.opus", 44100),
                                    ("ends at 4 GB", "slow.wav", out, 100000),
                                    ("more than 16777216 taps", source, out, 2147483647),
                                    ("48000 samples a second already", source, "kept.wav", 48000)):
            with self.subTest(message):
                self.assert_refused(message, *(self.dir / x if isinstance(x, str) else x for x in arguments))
                self.assertFalse(any(self.dir.glob("out*")))
        self.assertEqual(source.read_bytes(), whole)
        self.assertEqual((self.dir / "kept.wav").read_text(), "An older file.")

    def test_full_device(self):
        source, full = self.write("in.wav", 48000, [0.1] * 48000), self.dir / "full.wav"
        full.symlink_to("/dev/full")
        self.assert_refused("full.wav: cannot be written", source, full, 44100)
        self.assertTrue(full.is_symlink())

    def test_usage(self):
        for arguments in ((), ("a.wav",), ("a.wav", "b.wav"), ("a.wav", "b.wav", "8000", "9000")):
            done = self.run_program(*arguments)
            self.assertEqual((done.returncode, done.stdout, done.stderr[:6]), (2, "", "usage:"))
        self.assertEqual(self.run_program("--help").stdout[:6], "usage:")
        for rate in ("0", "-8000", "", "8k", "44100.5", "99999999999"):
            self.assert_refused("is no positive number", "a.wav", "b.wav", rate, status=2)

    def hour(self):
        """An hour of silence at 8 kHz, of 58 MB."""
        source = self.write("hour.wav", 8000, [], width=2)
        size = 2 * 8000 * 3600
        header = bytearray(source.read_bytes()[:44])
        struct.pack_into("<I", header, 4, 36 + size)
        struct.pack_into("<I", header, 40, size)
        source.write_bytes(header)
        os.truncate(source, 44 + size)
        return source

    @unittest.skipIf(SANITIZED, "the memory would be the sanitizer's, and the time too")
    def test_an_hour_takes_little_memory(self):
        arguments = [PROGRAM, self.hour(), self.dir / "out.wav", "4000"]
        done = subprocess.run([sys.executable, "-c", LAUNCHER, *arguments], capture_output=True, text=True, timeout=300)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertLess(int(done.stdout), 24 * 1024)
        self.assertEqual((self.dir / "out.wav").stat().st_size, 44 + 2 * 4000 * 3600)

    def test_interrupted_it_leaves_nothing(self):
        out = self.dir / "out.wav"
        running = subprocess.Popen([PROGRAM, self.hour(), out, "48000"], stderr=subprocess.PIPE, text=True)
        while not out.exists() and running.poll() is None:
            time.sleep(0.01)
        running.send_signal(signal.SIGINT)
        self.assertEqual((running.communicate(timeout=60)[1], running.returncode), ("zpp-resample: interrupted\n", 1))
        self.assertFalse(out.exists())

    def test_progress_is_shown_on_a_terminal(self):
        source = self.write("in.wav", 48000, [0.1] * 48000)
        terminal, stderr = pty.openpty()
        subprocess.run([PROGRAM, source, self.dir / "out.wav", "44100"], stderr=stderr, check=True, timeout=60)
        os.close(stderr)
        self.assertRegex(os.read(terminal, 10000), rb"^\rResampling \[#+ *\] .*\r\x1b\[K$")
        os.close(terminal)


if __name__ == "__main__":
    unittest.main(verbosity=2)
