"""Times the built program against cat and curl on this machine: prints tables, draws a picture.

The only argument is the file for the picture, as SVG, relative to the project's folder.
The commands take turns at every run, so that whatever else the machine does meets them alike. The
usual tool, hyperfine, times one command after the other: on one quiet machine five benches of it
gave 1.03 to 1.14 for a default run against cat, five of this 1.04 to 1.07.
"""
import os
import pathlib
import shlex
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = "build/bench/bin/get-qmb-ver"
MODULE = "build/bench/lib/get-qmb-ver/fetch.so"
LINKED = "build/bench-openssl/bin/get-qmb-ver"  # what it would be without a module
RUNS, WARMUP = 400, 10
ENTRY = "[RevisionInfo-EEF92FF99DD26159]\ninfo=4.7.2 (2022-06-30)\ntimestamp=9999999999\n"
PAGE = "--host=localhost /downloads/page"  # the page of the entry
CHART = """
set terminal svg size 760,190 font 'sans-serif,14'
set output '{file}'
set style fill solid
set xrange [0:{longest}]
set yrange [{bars} - 0.5:-0.5]
unset xtics
set border 0
set ytics scale 0 textcolor rgb '#808080'
set lmargin 32
plot '-' using (0):0:(0):1:($0 - 0.3):($0 + 0.3):ytic(2) with boxxyerror linecolor rgb '#3d8bcd' \\
  notitle, '-' using 1:0:(sprintf("%.1f ms", $1)) with labels left offset 0.5,0 \\
  textcolor rgb '#808080' notitle
"""


def cache_of(folder, entries):
    """A settings directory whose file holds so many entries, the page's own in the middle."""
    directory = pathlib.Path(folder, f"{entries}-entries")
    directory.mkdir()
    texts = [ENTRY.replace("EEF92FF99DD26159", f"{number:X}") for number in range(1, entries)]
    texts.insert(entries // 2, ENTRY)
    (directory / ".qvd_qmb_properties.ini").write_text("".join(texts))
    return directory


def seconds(command):
    """How long one run takes, from before it is started until it has ended."""
    discard = (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)
    begin = time.perf_counter()
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=[discard])
    _, status = os.waitpid(process, 0)
    end = time.perf_counter()
    if status:
        sys.exit(f"bench: {shlex.join(command)} failed")
    return end - begin


def medians(commands):
    """Median milliseconds of each command, by name."""
    times = {name: [] for name in commands}
    for _ in range(WARMUP + RUNS):
        for name, command in commands.items():
            times[name].append(seconds(shlex.split(command)))
    return {name: statistics.median(values[WARMUP:]) * 1000 for name, values in times.items()}


def peak_memory(command):
    """MiB of resident memory at most."""
    result = subprocess.run(f"exec time --format=%M {command}", shell=True, check=True, text=True,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(result.stderr) / 1024


def commands_of(folder, port):
    commands = {}
    for count in 1, 100, 10_000:
        directory = cache_of(folder, count)
        commands[f"cat, {count:,} in the file"] = f"cat {directory}/.qvd_qmb_properties.ini"
        commands[f"default run, {count:,} in the file"] = (
            f"{PROGRAM} --ini-dir={directory} {PAGE}")
    commands["default run, linked with OpenSSL"] = (
        f"{LINKED} --ini-dir={folder}/1-entries {PAGE}")
    commands["curl --version"] = "curl --version"
    commands["blocking run"] = f"{PROGRAM} --ini-dir={folder} --blocking --port={port} {PAGE}"
    commands["curl of the same page"] = (
        f"curl --silent --http1.0 --tls-max 1.2 --cacert {folder}/root.pem "
        f"https://localhost:{port}/downloads/page")
    return commands


def draw(picture, bars):
    """A bar for each time in milliseconds, on no ground, in colours for light and dark pages."""
    data = "".join(f'{value} "{name}"\n' for name, value in bars.items()) + "e\n"
    chart = CHART.format(file=picture, bars=len(bars), longest=1.2 * max(bars.values()))
    subprocess.run(["gnuplot"], input=chart + 2 * data, text=True, check=True)


def main(picture):
    os.chdir(ROOT)  # the commands hold no path but those below it, which have no blanks
    with tempfile.TemporaryDirectory(dir="build") as folder:
        folder = os.path.relpath(folder)
        os.environ["SSL_CERT_FILE"] = f"{folder}/root.pem"
        with subprocess.Popen([sys.executable, "-B", "scripts/https_server.py", folder],
                              stdout=subprocess.PIPE, text=True) as server:
            try:
                commands = commands_of(folder, server.stdout.readline().strip())
                took = medians(commands)
                memory = {name: peak_memory(command) for name, command in commands.items()}
            finally:
                server.terminate()

    print(f"| command | median of {RUNS} runs | peak memory |\n|---|--:|--:|")
    for name in commands:
        print(f"| {name} | {took[name]:.2f} ms | {memory[name]:.1f} MiB |")
    print("\n| ratio or size | measured | target |\n|---|--:|--:|")
    cat, default = took["cat, 1 in the file"], took["default run, 1 in the file"]
    for name, value, target in [
            ("default run / cat", default / cat, "1.15"),
            ("default run, linked with OpenSSL / cat",
             took["default run, linked with OpenSSL"] / cat, ""),
            ("default run / curl --version", default / took["curl --version"], ""),
            ("blocking run / curl", took["blocking run"] / took["curl of the same page"], "0.80"),
            ("10,000 entries / 100 entries",
             took["default run, 10,000 in the file"] / took["default run, 100 in the file"], "100"),
            ("peak memory of a default run, MiB", memory["default run, 1 in the file"], "3.5"),
            ("size of the program, MiB", os.path.getsize(PROGRAM) / 2**20, ""),
            ("size of the module, MiB", os.path.getsize(MODULE) / 2**20, "")]:
        print(f"| {name} | {value:.2f} | {target and 'at most ' + target} |")
    draw(picture, {"cat of the file": cat, "get-qmb-ver": default,
                   "get-qmb-ver --blocking": took["blocking run"],
                   "curl --version": took["curl --version"],
                   "curl of the same page": took["curl of the same page"]})


if __name__ == "__main__":
    main(sys.argv[1])
