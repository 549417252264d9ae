"""Plants every kind of fault that the checks look for, and what resembles it but is none."""

import os
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))

BAD_INCLUDES = {
    "platform/clock.h": "net/pairing.h",
    "net/pairing.cpp": "library/library.h",
    "library/library.h": "playback/remote_playback.h",
    "transfer/uploads.h": "playback/remote_playback.h",
    "playback/remote_playback.h": "transfer/uploads.h",
    "model/model.h": "ui/display_format.h",
    "ui/window.cpp": "app/composition.h",
    "stills/main.cpp": "platform/clock.h",
    "library/frames.h": "stills/picture.h",
    "pictures/jpeg.cpp": "stills/jpeg.h",
    "confined/limits.h": "pictures/picture.h",
    "net/discovery.cpp": "platform/avahi/avahi_connection.h",
    "model/http.cpp": "platform/http/curl_http_session.h",
    "ui/presenters/stills.cpp": "platform/stills/process_still_extractor.h",
    "ui/thumbnails/decode.cpp": "platform/pictures/process_picture_decoder.h",
    "ui/dialogs.cpp": "platform/dialogs/portal_file_dialogs.h",
    "playback/play.cpp": "platform/player/plugin_media_players.h",
    "ui/player/video.cpp": "player/mpv_player.h",
    "player/mpv.cpp": "playback/local_playback.h",
    "net/upwards.cpp": "../library/library.h",
    "unheard_of/file.h": "platform/clock.h",
}
GOOD_INCLUDES = {
    "platform/clock.cpp": "platform/avahi/avahi_connection.h",
    "net/pairing.h": "platform/http/http_session.h",
    "playback/timeline.cpp": "library/library.h",
    "ui/window.h": "model/model.h",
    "app/main.cpp": "platform/http/curl_http_session.h",
    "stills/frames.cpp": "stills/picture.h",
    "player/mpv.h": "platform/player/player_screen.h",
    "pictures/main.cpp": "confined/confinement.h",
}
BAD_AWAITS = {
    "designated": "co_await send(Request{.path = path});",
    "designated argument": "const Reply reply = co_await send({.path = path, .body = {}});",
    "designated on its own line": "co_await send(\n    Request{\n        .path = path});",
    "lambda": "co_await inBackground([this] { work(); more(); });",
    "lambda with everything": "x = use([&](int a) { return a; }, co_await f());",
    "lambda beside": "co_await f(), run([=] {});",
    "choice": "co_await f(isOld ? name() : other);",
    "choice of strings": "co_await f(isOld ? u\"a\"_s : b);",
    "choice of awaits": "const auto x = isOld ? co_await f() : 1;",
    "choice by an await": "const auto x = co_await f() ? 1 : 2;",
    "if": "if (co_await f())\n    g();",
    "if after a block": "{ g(); }\nif (!co_await f(1, {2})) { g(); }",
    "if with a variable": "if (const auto x = co_await f())\n    g();",
    "second part of if": "if (g(); co_await f()) g();",
    "else if": "if (x) g(); else if (co_await f()) g();",
    "while": "while (more && co_await f()) g();",
    "do while": "do { g(); } while (co_await f());",
    "inside a lambda": "auto task = [this]() -> Task<> { co_await send({.path = path}); };",
}
GOOD_AWAITS = """
Task<> run() {
    // if (co_await f()) co_await send({.path = path});
    const Request request{.path = u"co_await"_s, .name = a ? b() : c()};
    const char* text = "if (co_await f(x ? y() : z())) [&] {}";
    const auto raw = R"(while (co_await f()))";
    const auto work = [this, request] { return send({.path = request.path}); };
    co_await inBackground(work);
    if (isOld ? name() : other())
        co_await f();
    if (const auto reply = co_await f(1'000, 'x'); reply.isGood)
        g(reply.text[index]);
    while (true) {
        const int count = co_await f(isOld ? 1 : many);
        if (count == 0)
            co_return;
    }
    for (const auto& each : {Part{.name = 1}})
        co_await f(each[0], names[co_await g()]);
    auto later = [](Task<> task) -> Task<> { co_await std::move(task); };
    start([&] { g(); }(), later(run()));
    co_await f([] { return 1; });
    co_return co_await f();
}
auto operator co_await() && noexcept { return x ? Awaiter{.a = 1} : Awaiter{}; }
"""


def run(check, *folders):
    return subprocess.run([sys.executable, os.path.join(HERE, check), *folders],
                          capture_output=True, text=True, check=False)


def write(folder, name, text):
    path = os.path.join(folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


class PlantedFaults(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name

    def test_each_include_that_points_upwards_is_found(self):
        expected = []
        for name, header in BAD_INCLUDES.items():
            path = write(self.folder, name, f'// "a.h"\n/* */ #pragma once\n#include "{header}"\n')
            expected.append(f"{path}:{1 if name.startswith('unheard_of') else 3}")
        outcome = run("includes.py", self.folder)
        self.assertEqual(outcome.returncode, 1, outcome.stderr)
        found = [":".join(line.split(":")[:2]) for line in outcome.stdout.splitlines()]
        self.assertEqual(sorted(found), sorted(expected))

    def test_other_includes_pass(self):
        for name, header in GOOD_INCLUDES.items():
            write(self.folder, name, f'#include "{header}"\n#include <vector>\n'
                                     '// #include "ui/window.h"\n/*\n#include "app/main.h"\n*/\n')
        outcome = run("includes.py", self.folder)
        self.assertEqual((outcome.returncode, outcome.stdout), (0, ""), outcome.stderr)

    def test_each_await_that_is_miscompiled_is_found(self):
        for kind, code in BAD_AWAITS.items():
            with self.subTest(kind), tempfile.TemporaryDirectory() as folder:
                path = write(folder, "planted.cpp", "Task<> run() {\n    g();\n" + code + "\n}\n")
                outcome = run("awaits.py", folder)
                self.assertEqual(outcome.returncode, 1, outcome.stderr)
                self.assertTrue(outcome.stdout.startswith(path + ":"), outcome.stdout)

    def test_other_awaits_pass(self):
        write(self.folder, "good.cpp", GOOD_AWAITS)
        outcome = run("awaits.py", self.folder)
        self.assertEqual((outcome.returncode, outcome.stdout), (0, ""), outcome.stderr)


if __name__ == "__main__":
    unittest.main()
