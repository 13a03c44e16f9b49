"""Times the built program against cat and curl on this machine; prints a table and ratios.

All commands run in turn, several rounds, so that whatever else the machine does meets them alike.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = ROOT / "build/release/bin/get-qmb-ver"
MODULE = ROOT / "build/release/lib/get-qmb-ver/fetch.so"
ROUNDS, RUNS_PER_ROUND, WARMUP = 4, 100, 20
ENTRY = "[RevisionInfo-785739D6B89F466]\ninfo=4.7.2 (2022-06-30)\ntimestamp=9999999999\n"
PAGE = "--host=localhost /page"  # the page of the entry


def cache_of(folder, entries):
    """A settings directory whose file holds so many entries, the page's own in the middle."""
    directory = pathlib.Path(folder, f"{entries}-entries")
    directory.mkdir()
    texts = [ENTRY.replace("785739D6B89F466", f"{number:X}") for number in range(1, entries)]
    texts.insert(entries // 2, ENTRY)
    (directory / ".qvd_qmb_properties.ini").write_text("".join(texts))
    return directory


def medians(commands, folder):
    """Median seconds of each command, by name."""
    times = {name: [] for name in commands}
    report = pathlib.Path(folder, "report.json")
    for _ in range(ROUNDS):
        subprocess.run(["hyperfine", "--shell=none", f"--warmup={WARMUP}",
                        f"--runs={RUNS_PER_ROUND}", f"--export-json={report}",
                        *commands.values()], check=True, capture_output=True)
        for name, result in zip(commands, json.loads(report.read_text())["results"]):
            times[name] += result["times"]
    return {name: statistics.median(values) for name, values in times.items()}


def peak_memory(command):
    """KiB of resident memory at most."""
    result = subprocess.run(f"exec time --format=%M {command}", shell=True, check=True, text=True,
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return int(result.stderr)


def commands_of(folder, port):
    commands = {}
    for count in 1, 100, 10_000:
        directory = cache_of(folder, count)
        commands[f"cat, {count:,} in the file"] = f"cat {directory}/.qvd_qmb_properties.ini"
        commands[f"default run, {count:,} in the file"] = (
            f"{PROGRAM} --ini-dir={directory} {PAGE}")
    commands["curl --version"] = "curl --version"
    commands["blocking run"] = f"{PROGRAM} --ini-dir={folder} --blocking --port={port} {PAGE}"
    commands["curl of the same page"] = (
        f"curl --silent --http1.0 --tls-max 1.2 --cacert {folder}/root.pem "
        f"https://localhost:{port}/page")
    return commands


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.environ["SSL_CERT_FILE"] = f"{folder}/root.pem"
        with subprocess.Popen([sys.executable, "-B", f"{ROOT}/scripts/https_server.py", folder],
                              stdout=subprocess.PIPE, text=True) as server:
            try:
                commands = commands_of(folder, server.stdout.readline().strip())
                time = medians(commands, folder)
                memory = {name: peak_memory(command) for name, command in commands.items()}
            finally:
                server.terminate()

    print(f"| command | median of {ROUNDS * RUNS_PER_ROUND} runs | peak memory |\n|---|--:|--:|")
    for name in commands:
        print(f"| {name} | {time[name] * 1000:.2f} ms | {memory[name] / 1024:.1f} MiB |")
    print("\n| ratio or size | measured | target |\n|---|--:|--:|")
    for name, value, target in [
            ("default run / cat",
             time["default run, 1 in the file"] / time["cat, 1 in the file"], "1.15"),
            ("default run / curl --version",
             time["default run, 1 in the file"] / time["curl --version"], ""),
            ("blocking run / curl", time["blocking run"] / time["curl of the same page"], "0.80"),
            ("10,000 entries / 100 entries",
             time["default run, 10,000 in the file"] / time["default run, 100 in the file"], "100"),
            ("peak memory of a default run, MiB",
             memory["default run, 1 in the file"] / 1024, "4.5"),
            ("size of the program, MiB", PROGRAM.stat().st_size / 2**20, ""),
            ("size of the module, MiB", MODULE.stat().st_size / 2**20, "")]:
        print(f"| {name} | {value:.2f} | {target and 'at most ' + target} |")


if __name__ == "__main__":
    main()
