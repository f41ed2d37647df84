#!/usr/bin/env python3
"""Runs speech-band on generated recordings. Usage: speech_band_test.py PROGRAM"""
import array
import math
import pathlib
import random
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
INSIDE, OUTSIDE = 1000, 6000  # Hz


def tone(frequency, count=48000, rate=48000, amplitude=0.5):
    return [round(32767 * amplitude * math.sin(2 * math.pi * frequency * n / rate)) for n in range(count)]


class SpeechBand(unittest.TestCase):

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.dir = pathlib.Path(directory.name)

    def write(self, name, *channels, rate=48000):
        with wave.open(str(self.dir / name), "wb") as file:
            file.setparams((len(channels), 2, rate, 0, "NONE", ""))
            file.writeframes(array.array("h", [sample for frame in zip(*channels) for sample in frame]).tobytes())
        return self.dir / name

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=60)

    def printed(self, *files):
        done = self.run_program("--output", self.dir, *files)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def levels(self, *files):
        """The printed levels in dB: inside before, inside after, outside before, outside after; and the output."""
        table = dict(re.findall(r"^(inside|outside) +\S+ Hz +(.*)$", self.printed(*files), re.M))
        levels = [-200.0 if text == "silent" else float(text) for text in (table["inside"] + " " + table["outside"]).split()]
        with wave.open(str(self.dir / "speech-band.wav")) as file:
            samples = array.array("h", file.readframes(file.getnframes()))
        self.assertEqual((self.dir / "speech-band.png").read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        return levels, samples

    def assert_refused(self, message, *arguments):
        done = self.run_program(*arguments)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertRegex(done.stderr, rf"^speech-band: .*{message}.*\n$")
        self.assertEqual(done.stdout, "")

    def test_tone_inside_passes_unchanged_and_in_time(self):
        signal = tone(INSIDE)
        (before, after, *outside), filtered = self.levels(self.write("in.wav", signal))
        self.assertAlmostEqual(before, -6.0, delta=0.11)
        self.assertAlmostEqual(after, -6.0, delta=0.11)
        self.assertLess(max(outside), -45)  # the ends of the tone spread a little
        self.assertEqual(len(filtered), len(signal))
        # Beyond the reach of the filters at the ends, 149 samples at 8 kHz. The pass band is even to 50 dB.
        self.assertLess(max(abs(a - b) for a, b in zip(signal[900:-900], filtered[900:-900])), 0.5 * 32767 * 10**-2.5)

    def test_tone_outside_is_stopped(self):
        (_, inside, before, after), filtered = self.levels(self.write("out.wav", tone(OUTSIDE)))
        self.assertAlmostEqual(before, -6.0, delta=0.11)
        self.assertLess(after, before - 35)
        self.assertLess(inside, before - 35)
        # 8 kHz cannot hold it: of the tone itself (without its ends) nothing is left in 16 bits.
        self.assertEqual(set(filtered[900:-900]) - {-1, 0, 1}, set())

    def test_channels_are_mixed_down(self):
        voice, silence = tone(INSIDE), [0] * 48000
        for channels, expected in (((voice, silence), -12.0), ((voice, voice, voice), -6.0)):
            (before, *_), _ = self.levels(self.write("mixed.wav", *channels))
            self.assertAlmostEqual(before, expected, delta=0.11)
        levels, _ = self.levels(self.write("opposed.wav", voice, [-sample for sample in voice]))
        self.assertEqual(levels, [-200.0] * 4)

    def test_files_are_joined(self):
        _, filtered = self.levels(self.write("a.wav", tone(INSIDE, 5000)), self.write("b.wav", tone(INSIDE, 700)))
        self.assertEqual(len(filtered), 5700)
        other = self.write("c.wav", tone(INSIDE), rate=44100)
        self.assert_refused("44100 samples a second", "--output", self.dir, self.dir / "a.wav", other)

    def test_other_rates_and_lengths(self):
        for rate, count in ((8000, 8000), (6801, 6801), (192000, 50000), (48000, 1), (48000, 10), (48000, 8192 - 127)):
            with self.subTest(rate=rate, count=count):
                _, filtered = self.levels(self.write("other.wav", tone(INSIDE, count, rate), rate=rate))
                self.assertEqual(len(filtered), count)
        self.assert_refused("6800 samples a second", "--output", self.dir, self.write("low.wav", [1] * 100, rate=6800))

    def test_values_beyond_full_scale_and_none(self):
        values = struct.pack("<6f", math.nan, math.inf, -math.inf, 3e38, -3e38, 2.0) * 1000
        header = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(values), b"WAVE", b"fmt ", 16, 3, 1, 48000, 192000, 4,
                             32, b"data", len(values))
        (self.dir / "float.wav").write_bytes(header + values)
        levels, filtered = self.levels(self.dir / "float.wav")
        self.assertTrue(all(map(math.isfinite, levels)))
        self.assertEqual((max(filtered), min(filtered)), (32767, -32768))

    def companded(self, samples):
        """The printed ratios of signal to noise in dB: A-law, mu-law."""
        return re.search(r"^G\.711 and back +(\S+) +(\S+)$", self.printed(self.write("voice.wav", samples)), re.M).groups()

    def test_companding_has_the_noise_of_its_steps(self):
        """Steps of a size add the noise of their square / 12; G.711 has 16 for each octave, below some point fixed ones."""
        draw = random.Random(711)
        for loudness in (4000, 20):  # a voice's samples have this distribution, nearly
            voice = [max(-32768, min(32767, round(draw.choice((-1, 1)) * draw.expovariate(1 / loudness))))
                     for _ in range(40000)]
            power = sum(x * x for x in voice)
            for ratio, bias, least in zip(self.companded(voice), (0, 132), (16, 8)):
                steps = [max(least, 2 ** math.floor(math.log2(abs(x) + bias)) / 16) if x else least for x in voice]
                theory = 10 * math.log10(power / sum(step**2 / 12 for step in steps))
                self.assertAlmostEqual(float(ratio), theory, delta=0.3)
                if loudness == 4000:
                    self.assertAlmostEqual(float(ratio), 38, delta=1)
        self.assertEqual(self.companded([0] * 1000)[1], "-")

    def test_unreadable_files_are_refused(self):
        (self.dir / "text.wav").write_text("This is no recording. " * 10)
        (self.dir / "nothing.wav").touch()
        whole = self.write("whole.wav", tone(INSIDE)).read_bytes()
        (self.dir / "head.wav").write_bytes(whole[:30])
        for name, message in (("absent.wav", "cannot be read"), ("text.wav", "cannot be read"), (".", "cannot be read"),
                              ("nothing.wav", "cannot be read"), ("head.wav", "cannot be read|holds no samples")):
            with self.subTest(name):
                self.assert_refused(f"(?:{message})", "--output", self.dir, self.dir / name)
        self.assert_refused("holds no samples", "--output", self.dir, self.write("empty.wav", []))

    def test_unwritable_output_is_refused(self):
        recording = self.write("in.wav", tone(INSIDE))
        self.assert_refused("is no directory", "--output", recording, recording)
        for name in ("speech-band.wav", "speech-band.png"):
            (self.dir / name / name).mkdir(parents=True)
            self.assert_refused(f"{name}: cannot be written", "--output", self.dir / name, recording)

    def test_usage(self):
        for arguments in (["--output"], ["--unknown"]):
            done = self.run_program(*arguments)
            self.assertEqual((done.returncode, done.stdout, done.stderr[:6]), (2, "", "usage:"))
        self.assertEqual(self.run_program("--help").returncode, 0)


if __name__ == "__main__":
    unittest.main()
