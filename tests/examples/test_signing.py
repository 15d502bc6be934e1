"""The example that signs: its plug-in with a token of SoftHSM, without a page, and its dialog."""
import base64
import json
import os
import pathlib
import re
import shutil
import subprocess

from shell import BUILD, Shell

PLUGIN = BUILD / "examples/signing/plugin/libtovik.so"
TEST_TOKEN = BUILD / "tests/plugins/libtest-token.so"
SOFTHSM = next((str(path) for path in pathlib.Path("/usr/lib").rglob("libsofthsm2.so")), "none")
CURVES = {"ec": "P-256", "long": "P-521"}
# The id of the key, the scheme, the key's file, and what openssl has to be told.
SCHEMES = [("01-rsa", "", "rsa", ""), ("01-rsa", "pss", "rsa", "-sigopt rsa_padding_mode:pss"),
           *[("02-ec", "", "ec", ""), ("03-ec", "pss", "long", "")] * 4]
WRONG, LOCKED, LOW = "set Pin=1357 invoke Sign invoke Wait", "0xA4 CKR_PIN_LOCKED", "enum TokenTries {token}"
RIGHT = "set Pin=2468 invoke Sign invoke Wait"
REMOVED = f"{RIGHT} get Signature enum Token ''"
# What the token does, the steps after the tokens are known, and what their lines end with.
TROUBLE = [
    ("", WRONG, "0xA0 CKR_PIN_INCORRECT"),
    ("", f"{RIGHT} invoke Sign invoke Wait", "0x0 CKR_OK", "CKR_OK", "CKR_OK", "0xA2 CKR_PIN_LEN_RANGE"),
    ("", f"set Pin={'2' * 256} invoke Sign invoke Wait", "0xA2 CKR_PIN_LEN_RANGE"),
    ("", "set Key=none invoke Sign", "0x60 CKR_KEY_HANDLE_INVALID"),
    ("", "set Token=none invoke Sign", "0xE0 CKR_TOKEN_NOT_PRESENT"),
    ("", "set Document=/none invoke ReadDocument invoke Wait get Reason invoke Sign",
     "0x20 CKR_DATA_INVALID", '"/none: No such file or directory"', "0x20 CKR_DATA_INVALID"),
    ("", "set Document=/ invoke ReadDocument invoke Wait", "0x20 CKR_DATA_INVALID"),
    ("", "set Document=pipe invoke ReadDocument invoke Wait", "0x20 CKR_DATA_INVALID"),
    # Finalise ends it at once: reading all of it would last longer than the caller waits.
    ("", "set Document=endless invoke ReadDocument invoke Sign get State", "0x0 CKR_OK",
     "0x90 CKR_OPERATION_ACTIVE", '"document"'),
    ("locks", f"{WRONG} {LOW} {WRONG} {LOW} {WRONG} {LOW} {RIGHT}", "0xA0 CKR_PIN_INCORRECT", '"low"',
     '"final"', '"locked"', LOCKED),
    ("confirms", RIGHT, "0x0 CKR_OK", "0x0 CKR_OK"),
    ("reader", "enum TokenLogin {token} invoke Sign invoke Wait", '"reader"', "0x0 CKR_OK", "0x0 CKR_OK"),
    ("open", f"enum TokenLogin {{token}} {RIGHT}", '"none"', "0x60 CKR_KEY_HANDLE_INVALID"),
    ("latin", "enum TokenLabel {token}", '= "Zo\ufffd"'),
    ("removed=0x32", REMOVED, "0x32 CKR_DEVICE_REMOVED", '= ""', '("Token", "") = ""'),
    ("removed=0xE1", REMOVED, "0xE1 CKR_TOKEN_NOT_RECOGNIZED", '= ""', '("Token", "") = ""'),
    ("removed=0xB3", REMOVED, "0x32 CKR_DEVICE_REMOVED", '= ""', '("Token", "") = ""'),
    ("exchanged", RIGHT, "0x0 CKR_OK", "0xE0 CKR_TOKEN_NOT_PRESENT"),
    ("refuses=0x68", RIGHT, "0x68 CKR_KEY_FUNCTION_NOT_PERMITTED"),
]
# Statuses of commands or what the lists hold, and the answer when the dialog is closed then.
SENTENCES = [
    ({"ReadDocument": 0x20}, "CKR_DATA_INVALID"),
    ({"ListTokens": 0x1C2}, "CKR_LIBRARY_LOAD_FAILED"),
    ({"ListTokens": 0xE0, "Token": []}, "CKR_TOKEN_NOT_PRESENT"),
    ({"Key": []}, "CKR_KEY_HANDLE_INVALID"),
    ({"TokenTries": "locked"}, "CKR_PIN_LOCKED"),
    ({"Sign": 0xA0, "TokenTries": "final"}, "CKR_PIN_INCORRECT"),
    ({"Sign": 0x32}, "CKR_DEVICE_REMOVED"),
    ({"Sign": 0x68}, "CKR_KEY_FUNCTION_NOT_PERMITTED"),
    ({"Sign": 0x30}, "CKR_FUNCTION_FAILED"),
    ({"Sign": 0x80000001}, "CKR_FUNCTION_FAILED"),
    ({"bridge": False}, "CKR_FUNCTION_FAILED"),
]


class Signing(Shell):
    def setUp(self):
        super().setUp()
        self.environment |= {"SOFTHSM2_CONF": str(self.dir / "softhsm.conf"),
                             "TEST_TOKEN_MODULE": SOFTHSM, "LC_ALL": "C.UTF-8",
                             "TOVIK_SECRET_NAMES": "nothing"}  # a signature may hold "pin"
        (self.dir / "softhsm.conf").write_text(f"directories.tokendir = {self.dir}\nlog.level = ERROR\n")
        (self.dir / "document").write_text("We sell our bicycle.\n")

    def make_token(self, label, *keys):
        """A token with the keys of these names, whose ids are 01, 02, ..."""
        self.do("softhsm2-util", "--init-token", "--free", "--label", label, "--so-pin", "12345678",
                "--pin", "2468")
        for number, key in enumerate(keys, 1):
            options = f"EC -pkeyopt ec_paramgen_curve:{CURVES.get(key)}" if key != "rsa" else "RSA"
            self.do("openssl", "genpkey", "-quiet", "-algorithm", *options.split(), "-out", f"{key}.pem")
            self.do("openssl", "pkey", "-in", f"{key}.pem", "-pubout", "-out", f"{key}.pub")
            self.do("softhsm2-util", "--import", f"{key}.pem", "--token", label, "--label", f"Key {key}",
                    "--id", f"0{number}", "--pin", "2468")

    def do(self, *command):
        done = subprocess.run(command, env=self.desktop(), cwd=self.dir, text=True, capture_output=True)
        self.assertEqual(done.returncode, 0, done)
        return done.stdout

    def call(self, steps, module=TEST_TOKEN, plugin=PLUGIN, **environment):
        """What the steps print, after the tokens and the document are read."""
        begin = ("set Document=document invoke ReadDocument invoke Wait invoke ListTokens invoke Wait "
                 f"set Token={getattr(self, 'token', '')} set Key=01-rsa ")
        if module:
            begin = f"set Module={module} " + begin
        words = (begin + steps).replace("{token}", getattr(self, "token", "")).split()
        done = subprocess.run(
            [BUILD / "bin/tovik-plugin-call", plugin, *(word.replace("''", "") for word in words)],
            env=self.environment | environment, cwd=self.dir, text=True, capture_output=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""), done)
        return re.sub(r"(?m) \([0-9.]+ ms\).*$", "", done.stdout)

    def use_first_token(self):
        self.token = re.search(r'"Token", ""\) = "(.+)"$', self.call("enum Token ''"), re.M)[1]

    def check_signature(self, text, key, options=""):
        (self.dir / "signature").write_bytes(base64.b64decode(text, validate=True))
        self.assertEqual("Verified OK\n", self.do(
            "openssl", "dgst", "-sha256", *options.split(), "-verify", f"{key}.pub", "-signature",
            "signature", "document"))

    def test_openssl_verifies_what_each_mechanism_signs(self):
        self.make_token("Zoë", "rsa", "ec", "long")
        self.use_first_token()
        printed = self.call(" ".join(f"set Key={key} set Scheme={scheme or 'pkcs1'} {RIGHT} get Signature"
                                     for key, scheme, _, _ in SCHEMES))
        signatures = re.findall(r'"Signature"\) = "(.*)"', printed)
        for signature, (_, _, key, options) in zip(signatures, SCHEMES, strict=True):
            self.check_signature(signature, key, options)

    def test_each_trouble_has_its_status(self):
        self.make_token("Zoë", "rsa")
        os.mkfifo(self.dir / "pipe")
        with open(self.dir / "endless", "w") as file:
            file.truncate(1 << 40)
        self.use_first_token()
        for trouble, steps, *ends in TROUBLE:
            printed = self.call(steps, TEST_TOKEN=trouble)
            at = printed.index('("Key"')  # the calls before it succeed
            for end in ends:
                found = printed.find(end + "\n", at)
                self.assertGreater(found, 0, (trouble, end, printed))
                at = found + len(end)

    def test_modules_and_tokens_are_found_or_missed(self):
        for module in ("/none/module.so", PLUGIN):
            self.assertRegex(self.call("get Reason", module),
                             rf'0x1C2 .*\n(.*\n)+.*"Reason"\) = ".*{re.escape(str(module))}.*"')
        self.assertIn("0xE0 CKR_TOKEN_NOT_PRESENT", self.call(""))
        (self.dir / "ab.conf").write_text("# of another brand\n module = /none/of/ab \n")
        other = shutil.copy(PLUGIN, self.dir / "libab.so")
        self.assertIn("/none/of/ab", self.call("get Reason", None, other))
        self.do(BUILD / "bin/tovik-plugin-check", PLUGIN)
        self.make_token("Büro €", "rsa")
        self.make_token("Empty")
        self.use_first_token()
        asked = "enum Token {token} enum TokenLabel {token} enum KeyLabel 01-rsa enum KeyType 01-rsa"
        for module in (TEST_TOKEN, None):  # p11-kit's proxy finds SoftHSM where it is registered
            printed = self.call(asked, module)
            self.assertIn('= "Büro €"\n', printed) if module else self.assertIn('"Token"', printed)
        empty = re.search(r'"Token", ".+"\) = "(.+)"$', self.call(asked), re.M)[1]
        self.assertIn('"Key", "") = ""', self.call(f"set Token={empty} enum Key ''"))

    def product(self):
        """The product of the build, with a configuration that names the module."""
        product = shutil.copytree(BUILD / "signing", self.dir / "product")
        (product / "lib/tovik.conf").write_text(f"# of the test\nmodule = {TEST_TOKEN}\n")
        self.host = str(product / "bin/tovik")
        return product

    def test_dialog_signs_when_the_right_pin_is_typed(self):
        self.make_token("Zoë", "rsa")
        self.product()
        self.start(f"signing://dialog?document={self.dir}/document")
        for pin, condition in (("1357", lambda: "login 160" in self.log()),
                               ("2468", lambda: self.process.poll() is not None)):
            def typed():
                self.ask("xdotool search --onlyvisible --class tovik windowfocus key ctrl+a"
                         f" type {pin} && xdotool key Return")
                return condition()
            self.until(typed)
        self.check_signature(self.finish(), "rsa")
        self.until(lambda: "finalize" in self.log())
        self.assertIn("finalize in time\n", self.log())

    def test_dialog_has_a_sentence_for_each_trouble(self):
        product = self.product()
        page = (product / "lib/signing.html").read_text()
        stub = (pathlib.Path(__file__).parent / "stub.js").read_text()
        (product / "lib/stubbed.html").write_text(
            page.replace("<script", f"<script>{stub}</script>\n<script", 1))
        driver = (pathlib.Path(__file__).parent / "sentences.html").read_text()
        cases = [case for case, _ in SENTENCES]
        (product / "lib/index.html").write_text(driver.replace("CASES", json.dumps(cases)))
        seen = json.loads(self.run_host("-url", "index.html"))
        for (case, answer), shown in zip(SENTENCES, seen, strict=True):
            english, german = shown
            for words, answered, unnamed in shown:
                self.assertRegex(words, r"^[A-ZÄÖÜ].*\.$", case)
                self.assertEqual((answered, unnamed), (answer, []), case)
            self.assertNotEqual(english[0], german[0], case)
