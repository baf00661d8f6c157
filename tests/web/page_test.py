#!/usr/bin/env python3
"""Drives the page of a real tonadex-server in Chromium, as a smartphone and as a computer shows it,
light and dark. Usage: page_test.py SERVER BUILD_FOLDER"""
import base64
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.request
from pathlib import Path

from selenium import webdriver
from selenium.common.exceptions import ElementClickInterceptedException, StaleElementReferenceException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import WebDriverWait

sys.path.insert(0, str(Path(__file__).parent.parent / "server"))
from midi import midi_file
from running_server import RunningServer

SERVER, BUILD = sys.argv[1], Path(sys.argv[2])
VALS = "Vals:d=4,o=5,b=10:c,8d#,8e.6,2p,g"  # plays longer than the page is waited for
# Names that would run as script if the page inserted them as HTML; the server stores them like
# others. The first ones cannot be uploaded and are written to the folder.
HOSTILE = ["<img src=x onerror=ran=1>", "<svg onload=ran=1>", "\"><b id=ran>", "{{7*7}}${7*7}"]
UPLOADED = ["{{ran=1}}${ran=1}", "javascript;ran=1", "onload=ran=1"]
VIEWS = [(390, 844, "light"), (390, 844, "dark"), (1280, 800, "light"), (1280, 800, "dark")]

# Runs before the page's script and records what it plays and saves, how often it keeps the screen
# on, and its errors.
SPY = """
window.played = []; window.faults = []; window.saved = []; window.held = 0;
if (navigator.wakeLock) navigator.wakeLock.request = async () => ({ release: () => { --held; }, now: ++held });
HTMLAnchorElement.prototype.click = function () { saved.push(this.download); };
const set = AudioParam.prototype.setValueAtTime;
AudioParam.prototype.setValueAtTime = function (value, at) { played.push([value, at]); return set.call(this, value, at); };
document.addEventListener('securitypolicyviolation', (event) => faults.push(event.violatedDirective + ' ' + event.blockedURI));
addEventListener('error', (event) => faults.push(String(event.message)));
addEventListener('unhandledrejection', (event) => faults.push(String(event.reason)));
"""


def axe_script():
    """axe-core from npm, fetched once into the build folder; None without npm or a network."""
    script = BUILD / "node_modules/axe-core/axe.min.js"
    if not script.exists() and shutil.which("npm"):
        subprocess.run(["timeout", "60", "npm", "install", "--prefix", BUILD, "--no-save", "--silent", "axe-core@4"],
                       check=False)
    return script.read_text() if script.exists() else None


def stored(name):
    return f"{name.replace('/', '!')[:60]}:d=4,o=5,b=100:c,d,e"


class Page:
    def __init__(self, port, width, height, scheme, *switches):
        options = Options()
        options.binary_location = "/usr/bin/chromium"
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--force-device-scale-factor=1",
                         "--autoplay-policy=no-user-gesture-required", "--lang=es", "--disable-dev-shm-usage",
                         *switches):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.name, self.width, self.height = f"{width}-{scheme}", width, height
        run = self.browser.execute_cdp_cmd
        self.resize(width, height)
        run("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
        run("Page.addScriptToEvaluateOnNewDocument", {"source": SPY})
        self.base = f"http://127.0.0.1:{port}/"
        self.browser.get(self.base)

    def one(self, css):
        return self.browser.find_element(By.CSS_SELECTOR, css)

    def text(self, css):
        return self.one(css).text

    def js(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def until(self, holds, what):
        again = (StaleElementReferenceException, ElementClickInterceptedException)  # while lists change
        WebDriverWait(self.browser, 30, ignored_exceptions=again).until(lambda _: holds(), f"{self.name}: {what}")

    def press(self, css):
        def clicked():
            element = self.one(css)
            return element.is_displayed() and element.is_enabled() and [element.click()]
        self.until(clicked, css)

    def resize(self, width, height):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 600})

    def judge(self, what, axe):
        """axe-core finds nothing, nothing is wider than the window, and all buttons are large enough for a finger."""
        for width in (360, 1920, self.width):
            self.resize(width, self.height)
            wide = self.js("return [...document.querySelectorAll('html, dialog[open], dialog[open] *')]"
                           ".filter((e) => e.scrollWidth > Math.max(e.clientWidth, 1) + 1 "
                           "&& (e.matches('dialog') || getComputedStyle(e).overflowX === 'visible'))"
                           ".map((e) => e.tagName + e.id)")
            assert wide == [], (self.name, what, width, wide)
        small = self.js("return [...document.querySelectorAll('a, button, input, select, summary')].filter((e) => "
                        "e.checkVisibility() && e.getBoundingClientRect().height < 44).map((e) => e.outerHTML)")
        assert small == [], (self.name, what, small)
        if axe is None:
            return
        self.js(axe)
        found = self.browser.execute_async_script(
            "const done = arguments[0]; axe.run().then((r) => done(r.violations.map((v) => v.id + ': ' + v.help "
            "+ ' ' + v.nodes.map((n) => n.html.slice(0, 120)).join(' | '))));")
        assert found == [], (self.name, what, found)


def find_and_open(page, word, name):
    if page.js("return getComputedStyle(document.querySelector('.volver')).display !== 'none' && location.hash !== ''"):
        page.press(".volver a")
    page.one("#texto").clear()
    page.one("#texto").send_keys(word)
    page.until(lambda: page.text("#lista li:first-child button") == name and "melod" in page.text("#cuenta"), word)
    page.press("#lista li:first-child button")
    page.until(lambda: page.text("#nombre") == name, name)


def listen(page):
    page.js("played.length = 0")
    page.press("#tocar")
    page.until(lambda: page.js("return document.querySelectorAll('#dibujo .suena').length") == 1, "a note followed")
    played = page.js("return played")
    start = played[0][1]
    pitches = [[round(value), round(1000 * (at - start))] for value, at in played if value > 1]
    # c5, d#5, e6 and, after the pause, g5: Hz and ms.
    assert pitches == [[262, 0], [311, 6000], [659, 9000], [392, 25500]], pitches
    page.press("#tocar")
    assert page.js("return document.querySelectorAll('#dibujo .suena').length") == 0
    assert page.text("#tocar") == "Escuchar"


def pick(page, items, words):
    """Opens the menu that has the items, and clicks the one with the words."""
    page.press(f".menu:has({items}) summary")
    next(button for button in page.browser.find_elements(By.CSS_SELECTOR, items + " button") if words in button.text).click()


def transpose(page):
    before = page.js("return location.hash")
    pick(page, "#tonos", "octava más grave")
    page.until(lambda: ":d=4,o=4," in page.js("return decodeURIComponent(location.hash)"), "an octave lower")
    pick(page, "#tonos", "octava más agud")
    page.until(lambda: page.js("return location.hash") == before, "as it was")


def download(page):
    pick(page, "#formatos", ".mid)")
    page.until(lambda: page.js("return saved") == ["Vals.mid"], "the MIDI file")


def choose_phone(page, typed, axe):
    page.press("#movil")
    page.one("#m-texto").send_keys(typed)
    page.judge("movil", axe)
    page.press("#m-lista li:first-child button")


def type_it(page, axe):
    page.until(lambda: page.text("#resultado").startswith("1 28#"), page.text("#resultado"))
    page.judge("melodia", axe)
    page.press("#guardar")
    page.until(lambda: page.js("return saved") == ["Vals.mid", "Vals.txt"], "the keys' file")
    print_sheet(page)
    page.press("#teclear")
    assert page.text("#g-lugar") == "1 de 5" and page.js("return held") == 1
    page.judge("teclear", axe)
    for width, height in ((360, 560), (844, 390), (page.width, page.height)):  # the space that browsers leave on small screens
        page.resize(width, height)
        page.until(lambda: page.js("return innerHeight === arguments[0] && ['g-paso', 'g-texto'].every((id) => { const e = "
                                   "document.getElementById(id); return e.scrollHeight <= e.clientHeight + 1; })", height),
                   f"{width}x{height} without a cut")
    by_itself(page)
    page.one("#guia").send_keys(Keys.ARROW_RIGHT)
    swipe(page, -150)
    page.until(lambda: page.text("#g-lugar") == "3 de 5", "the third group")
    assert "mantén 3 s" in page.text("#g-grupo") and page.text("#g-pantalla b") == "8.e2"
    pressed = [key.text.split("\n")[0] for key in page.browser.find_elements(By.CSS_SELECTOR, "#g-teclado .pulsa")]
    assert pressed == ["3", "*"], pressed
    swipe(page, 150)
    page.until(lambda: page.text("#g-lugar") == "2 de 5", "back by a swipe")
    page.press("#guia [data-cierra]")
    page.until(lambda: page.js("return held") == 0, "the screen let go")
    page.press("#teclear")  # continues at the saved step
    assert page.text("#g-lugar") == "2 de 5"
    swipe(page, 0)  # a tap
    for _ in range(3):
        page.press("#g-sigue")
    page.until(lambda: not page.one("#guia").is_displayed(), "the end")
    assert "Ya está" in page.text("#aviso")
    page.press("#teclear")
    page.press("#g-solo")
    page.js("location.hash = '#Otra:d=4,o=5,b=120:c,d'")  # another melody closes the guide
    page.until(lambda: page.text("#nombre") == "Otra" and page.text("#resultado").startswith("1* 2"), "the other melody")
    assert page.text("#aviso") in ("", "¡Ya está! Guárdala en el móvil y escúchala."), page.text("#aviso")


def by_itself(page):
    """"Avanzar solo" and the notes that sound on the way; Home and End."""
    page.js("played.length = 0")
    page.press("#g-oir")
    page.js("const s = document.querySelector('#g-cada'); s.value = 1; s.dispatchEvent(new Event('change'))")
    page.press("#g-solo")
    assert page.text("#g-solo") == "Parar"
    page.until(lambda: page.text("#g-lugar") == "5 de 5", "the last group")
    assert page.text("#g-solo") == "Avanzar solo" and not page.one("#g-solo").is_enabled()
    pitches = [round(value) for value, _ in page.js("return played") if value > 1]
    assert pitches == [262, 311, 659, 392], pitches  # a pause is silent
    page.press("#g-oir")
    for focus, key, place in (("#guia", Keys.HOME, 1), ("#guia", Keys.END, 5), ("#g-antes", Keys.ENTER, 4), ("#guia", Keys.END, 5)):
        page.one(focus).send_keys(key)
        assert page.text("#g-lugar") == f"{place} de 5", key
    page.press("#guia [data-cierra]")
    page.press("#teclear")  # after the last group it begins again
    assert page.text("#g-lugar") == "1 de 5"


def print_sheet(page):
    data = page.browser.execute_cdp_cmd("Page.printToPDF", {})["data"]
    text = subprocess.run(["pdftotext", "-", "-"], input=base64.b64decode(data), capture_output=True, check=True).stdout
    words = text.decode().split()
    assert "Vals" in words and "(3)*" in words and "Escuchar" not in words, words


def without_script(port):
    page = Page(port, 390, 844, "light", "--blink-settings=scriptEnabled=false")
    assert page.one("noscript a[download]").is_displayed() and not page.one("#todo").is_displayed()
    page.one("#sin").send_keys("vals" + Keys.ENTER)
    page.until(lambda: "Vals (vals.34)" in page.text("body"), "the listing")
    page.browser.quit()


def without_melodies(port):
    page = Page(port, 390, 844, "light")
    page.until(lambda: "Todavía no hay ninguna" in page.text("#cuenta"), "the empty shelf")
    page.browser.quit()


def swipe(page, by):
    box = page.one("#g-palabras").rect
    x, y = box["x"] + box["width"] / 2, box["y"] + box["height"] / 2
    for kind, at in (("mousePressed", x), ("mouseReleased", x + by)):
        page.browser.execute_cdp_cmd("Input.dispatchMouseEvent",
                                     {"type": kind, "x": at, "y": y, "button": "left", "clickCount": 1})


def paste(page, axe):
    page.browser.get(page.base)
    page.press("#propia summary")
    page.one("#pegado").send_keys("Roto:d=4,o=5,b=100:c,9e,f")
    page.until(lambda: "Nota 2" in page.text("#p-frase"), "the fault")
    page.judge("pegado", axe)
    page.press("#p-arreglar")
    page.until(lambda: page.text("#nombre") == "Roto", "the repaired melody")
    assert page.js("return location.hash").startswith("#Roto:d=4,o=5,b=100:c,8e")
    page.until(lambda: "«9e» pasa a «8e»." in page.js("return document.querySelector('#p-fallos').textContent"), "the changes")
    page.browser.get(page.base)
    assert page.one("#pegado").get_property("value").startswith("Roto:d=4"), "what is written survives a reload"
    page.press("#propia summary")
    with tempfile.NamedTemporaryFile("w", suffix=".txt") as file:
        file.write(VALS + "\n\n" + VALS.replace("Vals", "Dos") + "\n")
        file.flush()
        page.one("#fichero").send_keys(file.name)
        page.until(lambda: page.text("#cuenta").startswith("2 melodías de"), "the file's melodies")


def drop(page, axe):
    """Files of all formats, dropped anywhere on the page."""
    midi = midi_file([("Bajo", [36, 43, 36, 43]), ("Flauta", [88, 86, 84, 83, 84, 86])])
    imelody = b"BEGIN:IMELODY\r\nVERSION:1.2\r\nFORMAT:CLASS1.0\r\nMELODY:*4c3d3\r\nEND:IMELODY\r\n"
    for name, contents, place, words in (
            ("Dos.mid", midi, "#lista li:first-child", "Flauta\nparece la melodía"), ("Tono.imy", imelody, "#nombre", "Tono"),
            ("Nada.bin", bytes(99), "#aviso", "no se reconoce"), ("Todo.mid", 20 << 20, "#aviso", "demasiado grande")):
        page.js("const files = new DataTransfer(), bytes = arguments[1];"
                "files.items.add(new File([bytes.length ? Uint8Array.from(bytes) : new Uint8Array(bytes)], arguments[0]));"
                "dispatchEvent(new DragEvent('drop', { dataTransfer: files, cancelable: true }))",
                name, contents if isinstance(contents, int) else list(contents))
        page.until(lambda: words in page.text(place), name)
        if name == "Dos.mid":
            page.judge("voces", axe)
            page.press("#lista li:first-child button")
            page.until(lambda: page.text("#nombre") == "Dos", name)


def drag(page):
    """What the browser itself drops: a folder, several files, and text into the box."""
    page.browser.get(page.base)
    page.press("#propia summary")
    page.one("#pegado").clear()
    box = page.one("#pegado").rect
    text = [{"mimeType": "text/plain", "data": VALS}]
    for data, holds in (({"files": [str(BUILD)], "items": []}, lambda: "no una carpeta" in page.text("#aviso")),
                        ({"files": [SERVER, __file__], "items": []}, lambda: "de uno en uno" in page.text("#aviso")),
                        ({"items": text}, lambda: VALS in page.js("return document.querySelector('#pegado').value"))):
        def dropped():
            for kind in ("dragEnter", "dragOver", "dragOver", "drop"):
                page.browser.execute_cdp_cmd("Input.dispatchDragEvent", {
                    "type": kind, "x": box["x"] + 9, "y": box["y"] + 9, "data": {**data, "dragOperationsMask": 1}})
                time.sleep(0.2)  # nothing is dropped before the page has answered that it may be
            return holds()
        page.until(dropped, str(data))


def unreachable(page):
    """A server that is slow, then gone, then back."""
    page.browser.get(page.base)
    condition = {"offline": False, "latency": 1500, "downloadThroughput": -1, "uploadThroughput": -1}
    for change, holds in (({}, lambda: page.one("body.espera")), ({"offline": True}, lambda: "no contesta" in page.text("#cuenta")),
                          ({"latency": 0}, lambda: "No hay ninguna" in page.text("#cuenta"))):
        page.browser.execute_cdp_cmd("Network.enable", {})
        page.browser.execute_cdp_cmd("Network.emulateNetworkConditions", {**condition, **change})
        page.one("#texto").send_keys("a")
        page.until(holds, str(change))


def share(page, axe):
    name = "Compartida " + page.name.replace("-", " ")
    page.browser.get(page.base + "#" + name.replace(" ", "%20") + ":d=4,o=5,b=100:c,d%23,e")
    page.until(lambda: page.text("#nombre") == name, "the melody of the address")
    assert page.text("#movil") == "Nokia Pulsaciones"  # the choice was saved
    page.press("#compartir")
    page.until(lambda: page.js("return document.querySelector('#e-qr').naturalWidth") > 0, "the QR code")
    page.judge("compartir", axe)
    page.press("#e-copiar")
    page.until(lambda: page.js("const box = document.querySelector('#aviso').getBoundingClientRect(); return "
                               "document.elementFromPoint(box.x + box.width / 2, box.y + 5)?.id") == "aviso", "said in front")
    page.press("#e-subir")
    page.until(lambda: "¡Gracias!" in page.text("#e-dicho"), "the upload")
    page.press("#enlace [data-cierra]")
    page.press("#compartir")
    assert "ya está en el servidor" in page.text("#e-dicho")
    page.press("#enlace [data-cierra]")
    find_and_open(page, name.lower(), name)


def full_list(page):
    page.one("#texto").send_keys("cien")
    page.until(lambda: page.text("#cuenta") == "100 melodías o más", "a full list")


def hostile(page):
    """Names and melodies never become scripts or elements."""
    page.browser.get(page.base)
    for name in UPLOADED:
        urllib.request.urlopen(urllib.request.Request(page.base + "api/v1/melodias", stored(f"{name} {page.name}").encode(),
                                                      {"Content-Type": "text/plain"}))
    page.one("#texto").send_keys("ran=1")
    listed = HOSTILE[:2] + [f"{name} {page.name}" for name in UPLOADED]
    page.until(lambda: all(name in page.text("#lista") for name in listed), "the hostile names")
    for text in [stored(name) for name in HOSTILE + UPLOADED] + ["<script>window.ran=1</script>:d=4,o=5,b=1:<img src=x>"]:
        page.js("location.hash = '#' + encodeURIComponent(arguments[0])", text)
        page.until(lambda: page.text("#nombre") == text.split(":d=")[0], text)
    page.js("document.querySelector('#azar').click()")
    page.until(lambda: page.js("return document.querySelector('#cuenta').textContent") == "Diez al azar", "ten at random")
    assert page.js("return window.ran === undefined && !document.querySelector('#ran, #lista img, #abierta script')")


def visit(port, view, works):
    """Runs all tests on a fresh page, without script errors or violations of its Content-Security-Policy."""
    page = Page(port, *view)
    try:
        page.until(lambda: page.text("#lista") != "", "the newest melodies")
        for work in works:
            work(page)
        faults = page.js("return faults") + [entry["message"] for entry in page.browser.get_log("browser")
                                             if entry["level"] == "SEVERE" and entry["source"] != "network"]
        assert faults == [], (page.name, faults)
    except BaseException:
        print(page.js("return faults"), page.browser.get_log("browser"), page.text("#aviso"))
        raise
    finally:
        page.browser.quit()


def main():
    axe = axe_script()
    if axe is None:
        print("axe-core cannot be fetched: the page is not checked for accessibility")
    works = [lambda page: page.judge("inicio", axe), full_list, lambda page: find_and_open(page, "vals", "Vals"), listen, transpose, download,
             lambda page: choose_phone(page, "nokia puls", axe), lambda page: type_it(page, axe),
             lambda page: paste(page, axe), lambda page: drop(page, axe), drag, lambda page: share(page, axe), unreachable,
             hostile]
    melodies = {"vals.34": VALS, "marcha.30": "Marcha:d=8,o=5,b=90:c,d,e,f"}
    melodies |= {f"cien{number}.30": stored("Cien") for number in range(100)}
    for number, name in enumerate(HOSTILE):
        melodies[f"raro{number}.{30 + number}"] = stored(name)
    with tempfile.TemporaryDirectory() as home, RunningServer(SERVER, home, melodies) as server:
        for view in VIEWS:
            visit(server.port, view, works)
        without_script(server.port)
    with tempfile.TemporaryDirectory() as home, RunningServer(SERVER, home, {}) as server:
        without_melodies(server.port)


main()
