// How long the window is silent while its library changes: the longest time that its event loop
// does not come round, and the longest time between two of its frames while an animation runs.
//
//   window_silence ROWS [ROUNDS]

#include "ui/fake_window_ports.h"
#include "ui/recording_actions.h"
#include "ui/sample_state.h"
#include "ui/window/graphics_choice.h"
#include "ui/window/window_view.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

using namespace quiv;
using namespace Qt::StringLiterals;

namespace {

constexpr double NanosecondsPerMillisecond = 1e6;

// Keeps a window drawing, and notes its longest silence since the last take().
class Watch {
public:
    explicit Watch(QQuickWindow& window) {
        QObject::connect(&m_heartbeat, &QTimer::timeout, [this] { note(m_sinceBeat, m_silence); });
        QObject::connect(&window, &QQuickWindow::frameSwapped, [this, &window] {
            note(m_sinceFrame, m_frame);
            window.update();
        });
        m_sinceBeat.start();
        m_sinceFrame.start();
        m_heartbeat.start(0);
        window.update();
    }

    struct Longest {
        double silenceMs = 0;
        double frameMs = 0;
    };
    Longest take() {
        return {double(std::exchange(m_silence, 0)) / NanosecondsPerMillisecond,
                double(std::exchange(m_frame, 0)) / NanosecondsPerMillisecond};
    }

private:
    static void note(QElapsedTimer& since, qint64& longest) {
        longest = std::max(longest, since.nsecsElapsed());
        since.restart();
    }

    QTimer m_heartbeat;
    QElapsedTimer m_sinceBeat;
    QElapsedTimer m_sinceFrame;
    qint64 m_silence = 0;
    qint64 m_frame = 0;
};

void runFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
}

class Bench {
public:
    Bench(int rows, int rounds) : m_rows(sampleRows(rows)), m_rounds(rounds) {
        m_state.content.groupedFiles = m_rows;
        m_state.selectedDevice = Bedroom;
        m_view.window()->resize(960, 640);
        m_view.window()->show();
        m_presenter.show(m_state);
        runFor(1500);
    }

    void run() {
        Watch watch(*m_view.window());
        const auto nothing = [](int) {
        };
        const auto show = [this](int) {
            m_presenter.show(m_state);
        };
        measure(watch, "at rest", nothing, nothing);
        const auto changeFile = [this](int round) {
            m_rows[m_rows.size() / 2].group.title = u"changed "_s + QString::number(round);
            takeRows();
        };
        measure(watch, "one changed file", changeFile, show);
        const auto addFile = [this](int round) {
            const QString name = u"new "_s + QString::number(round);
            m_rows.prepend(sampleRow(name + u".mkv"_s, name));
            takeRows();
        };
        measure(watch, "one new file on top", addFile, show);
        const auto typeLetter = [this](int round) {
            const QString text = u"video 99999"_s;
            m_presenter.library()->search(text.first(round % text.size()));
        };
        measure(watch, "one more letter searched for", nothing, typeLetter);
        m_presenter.library()->search({});
        const auto queueOrClear = [this](int round) {
            m_state.uploads.clear();
            for (int number = 0; round % 2 == 0 && number < 300; ++number) {
                const QString name = QString::number(number);
                m_state.uploads.append(sampleUpload(name, name + u".mkv"_s, Bedroom));
            }
        };
        measure(watch, "300 files queued, or gone", queueOrClear, show);
    }

private:
    // A list of its own, as a decoded listing is.
    void takeRows() {
        QList<LibraryRow> rows(m_rows.cbegin(), m_rows.cend());
        m_state.content.groupedFiles = std::move(rows);
    }

    // Only what follows `show` is timed.
    void measure(Watch& watch, const char* what, const std::function<void(int)>& prepare,
                 const std::function<void(int)>& show) {
        std::vector<double> silences;
        std::vector<double> frames;
        for (int round = 0; round < m_rounds; ++round) {
            const WindowState before = m_state; // as the library does, which frees it elsewhere
            prepare(round);
            runFor(100);
            watch.take();
            show(round);
            runFor(400);
            const Watch::Longest longest = watch.take();
            silences.push_back(longest.silenceMs);
            frames.push_back(longest.frameMs);
        }
        std::ranges::sort(silences);
        std::ranges::sort(frames);
        std::printf("%-30s silence %6.1f ms (%.1f to %.1f)   frame %6.1f ms (%.1f to %.1f)\n", what,
                    silences[silences.size() / 2], silences.front(), silences.back(),
                    frames[frames.size() / 2], frames.front(), frames.back());
        std::fflush(stdout);
    }

    RecordingActions m_actions;
    FakeWindowPorts m_ports;
    WindowState m_state;
    QList<LibraryRow> m_rows;
    int m_rounds;
    WindowPresenter m_presenter{m_actions, m_ports.ports};
    WindowView m_view{m_presenter, m_ports.appearance};
};

} // namespace

int main(int argc, char* argv[]) {
    const QGuiApplication app(argc, argv);
    chooseGraphics();
    const QStringList arguments = QGuiApplication::arguments();
    const int rows = arguments.value(1, u"100000"_s).toInt();
    const int rounds = arguments.value(2, u"7"_s).toInt();
    std::printf("%d rows, the median of %d rounds (least to most)\n", rows, rounds);
    Bench(rows, rounds).run();
    return 0;
}
