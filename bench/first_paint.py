#!/usr/bin/env python3
"""first_paint.py SERVER [TIMES]
Milliseconds from the request for the web page to its first paint and to its complete list, in a new Chromium
each time, at full speed and with the processor and network of an old smartphone simulated."""
import statistics
import sys
import tempfile
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

sys.path.insert(0, str(Path(__file__).parent.parent / "tests/server"))
from running_server import RunningServer

TIMES = int(sys.argv[2]) if len(sys.argv) > 2 else 9
PAINT = "const paint = performance.getEntriesByName('first-contentful-paint')[0]; return paint && paint.startTime"
LIST = "return document.querySelector('#lista li') && performance.now()"
SLOW_NETWORK = {"offline": False, "latency": 150, "downloadThroughput": 200_000, "uploadThroughput": 90_000}


def load(address, slow):
    options = webdriver.ChromeOptions()
    for argument in ("headless=new", "no-sandbox", "window-size=390,844"):
        options.add_argument("--" + argument)
    with webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver")) as browser:
        if slow:
            browser.execute_cdp_cmd("Network.enable", {})
            browser.execute_cdp_cmd("Network.emulateNetworkConditions", SLOW_NETWORK)
            browser.execute_cdp_cmd("Emulation.setCPUThrottlingRate", {"rate": 6})
        browser.get(address)
        wait = WebDriverWait(browser, 30, poll_frequency=0.01)
        filled = wait.until(lambda _: browser.execute_script(LIST))
        return wait.until(lambda _: browser.execute_script(PAINT)), filled


with tempfile.TemporaryDirectory() as home:
    melodies = {f"Vals {i}.40": f"Vals {i}:d=4,o=5,b=120:c,d,e" for i in range(100)}
    with RunningServer(sys.argv[1], home, melodies) as server:
        for slow in (False, True):
            paints, filled = zip(*(load(f"http://127.0.0.1:{server.port}/", slow) for _ in range(TIMES)))
            print(f"{'smartphone' if slow else 'full speed'}: first paint {statistics.median(paints):.0f} ms "
                  f"({min(paints):.0f} to {max(paints):.0f}), list {statistics.median(filled):.0f} ms", flush=True)
