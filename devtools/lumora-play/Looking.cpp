// What the verbs of a script do that look at the outcome and change nothing.
#include "Controls.h"
#include "Look.h"
#include "Player.h"
#include "Shot.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRegularExpression>
#include <QWidget>

namespace lumora::play {

namespace {

/// "*" matches any run of characters; runs of blanks count as one.
bool agrees(const QString &value, const QString &pattern) {
    const QString expression = QRegularExpression::escape(pattern.simplified()).replace("\\*", ".*");
    static constexpr auto across = QRegularExpression::DotMatchesEverythingOption;
    return QRegularExpression(QRegularExpression::anchoredPattern(expression), across)
        .match(value.simplified())
        .hasMatch();
}

QString quoted(const QString &value) {
    return value.contains(' ') || value.isEmpty() ? '"' + value + '"' : value;
}

constexpr int remakeTime = 1000; // milliseconds: what the step before it set off has come to its end

/// Size and SHA-256 of the picture's RGBA rows; where a mask of its size is set, the pixels count as 0.
QString printOf(const QImage &photo, const QImage &mask = {}) {
    QImage picture = photo.convertToFormat(QImage::Format_RGBA8888);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (int y = 0; y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < mask.width(); ++x) {
            row[x] = mask.constScanLine(y)[x] == 0 ? row[x] : 0;
        }
        hash.addData(QByteArrayView(reinterpret_cast<const char *>(row), qsizetype(picture.width()) * 4));
    }
    return QString("%1x%2 %3").arg(picture.width()).arg(picture.height()).arg(QLatin1String(hash.result().toHex()));
}

} // namespace

bool Player::observed(const QString &what, QString &value, QString &problem) const {
    if (what == "hash") {
        value = printOf(m_program.picture());
        return true;
    }
    if (what.startsWith("outside.")) {
        const QImage mask = m_masks.value(what.mid(8));
        const QImage photo = m_program.picture();
        problem = mask.isNull()                 ? QString("there is no mask %1").arg(what.mid(8))
                  : mask.size() != photo.size() ? QString("the photo has another size than the mask")
                                                : QString();
        value = problem.isEmpty() ? printOf(photo, mask) : QString();
        return problem.isEmpty();
    }
    if (what == "state.windows") {
        value = windowNames();
        return true;
    }
    if (what.startsWith("state.")) {
        for (const auto &[name, current] : m_program.state()) {
            if (what.mid(6) == name) {
                value = current;
                return true;
            }
        }
        problem = QString("state has no %1").arg(what.mid(6));
        return false;
    }
    const FoundControl found = findControl(what.section('@', 0, 0));
    problem = found.problem;
    if (found.widget != nullptr) {
        value = valueOf(*found.widget, what.section('@', 1));
    }
    return found.widget != nullptr;
}

Outcome Player::expect(const Step &step) {
    QString value;
    QString problem;
    if (!observed(step.word(0), value, problem)) {
        return Outcome::notYet(problem);
    }
    return agrees(value, step.word(1)) ? Outcome::done() : Outcome::notYet(QString("it is \"%1\"").arg(value));
}

Outcome Player::expectNot(const Step &step) {
    QString value;
    QString problem;
    if (!observed(step.word(0), value, problem)) {
        return Outcome::notYet(problem);
    }
    return agrees(value, step.word(1)) ? Outcome::notYet("it is just that") : Outcome::done();
}

Outcome Player::expectGone(const Step &step) {
    const FoundControl found = findControl(step.word(0));
    return found.widget != nullptr && found.widget->isVisible() ? Outcome::notYet("it is visible") : Outcome::done();
}

bool Player::seen(const Step &step, QImage &picture, QString &problem) const {
    if (step.word(1).isEmpty()) {
        picture = lookOf(m_program.picture());
        return true;
    }
    const FoundControl found = findControl(step.word(1));
    if (found.widget == nullptr || !found.widget->isVisible() || m_program.isMoving()) {
        problem = found.widget == nullptr      ? found.problem
                  : !found.widget->isVisible() ? QString("it is hidden")
                                               : QString("something is still moving");
        return false;
    }
    picture = lookOf(found.widget->grab().toImage());
    return true;
}

Outcome Player::look(const Step &step) {
    QImage picture;
    QString problem;
    if (!seen(step, picture, problem)) {
        return Outcome::notYet(problem);
    }
    m_looks[step.word(0)] = picture;
    return Outcome::done();
}

Outcome Player::expectLook(const Step &step) {
    QImage picture;
    QString problem;
    if (!seen(step, picture, problem)) {
        return Outcome::notYet(problem);
    }
    const bool kept = m_looks.contains(step.word(0));
    const QString file = QDir::current().absoluteFilePath(step.word(0));
    const QString apart = difference(picture, kept ? m_looks.value(step.word(0)) : QImage(file));
    if (apart.isEmpty()) {
        return Outcome::done();
    }
    if (kept || !remakesLooks || m_stepClock.elapsed() < remakeTime) {
        return Outcome::notYet(apart);
    }
    if (!picture.save(file)) {
        finish(QString("%1 cannot be written").arg(file));
    } else {
        print(file);
    }
    return Outcome::done();
}

QString Player::windowNames() {
    QStringList names;
    for (const QWidget *window : openWindows()) {
        names << nameOf(*window);
    }
    return names.join(',');
}

Outcome Player::state(const Step &) {
    QStringList words;
    for (const auto &[name, value] : m_program.state()) {
        words << name + '=' + quoted(value);
    }
    print((words << "windows=" + quoted(windowNames())).join(' '));
    return Outcome::done();
}

Outcome Player::hash(const Step &step) {
    const bool outside = step.word(0) == "outside";
    const QString keep = outside ? step.word(2) : step.word(0);
    QString value;
    QString problem;
    if (!observed(outside ? "outside." + step.word(1) : "hash", value, problem)) {
        return Outcome::notYet(problem);
    }
    print(value);
    if (!keep.isEmpty()) {
        variables[keep] = value;
    }
    return Outcome::done();
}

Outcome Player::mask(const Step &step) {
    const QImage marked = m_program.marked();
    if (marked.isNull()) {
        return Outcome::notYet("nothing is marked");
    }
    m_masks[step.word(0)] = marked;
    return Outcome::done();
}

Outcome Player::shot(const Step &step) {
    const QString path = QDir::current().absoluteFilePath(step.word(0));
    QRect part;
    for (const QString &name : step.word(1).split(' ', Qt::SkipEmptyParts)) {
        const FoundControl found = findControl(name);
        if (found.widget == nullptr || !found.widget->isVisible() || m_program.isMoving()) {
            return Outcome::notYet(found.widget == nullptr     ? found.problem
                                   : found.widget->isVisible() ? QString("something is still moving")
                                                               : QString("%1 is hidden").arg(name));
        }
        part |= QRect(found.widget->mapToGlobal(QPoint(0, 0)), found.widget->size());
    }
    const QImage picture = takeShot(m_pointerShown ? &m_hand : nullptr);
    if (!(part.isNull() ? picture : partOf(picture, part)).save(path)) {
        finish(QString("%1 cannot be written").arg(path));
        return Outcome::done();
    }
    print(path);
    return Outcome::done();
}

Outcome Player::pointer(const Step &step) {
    m_pointerShown = step.word(0) == "on";
    return Outcome::done();
}

Outcome Player::film(const Step &step) {
    if (step.word(0) != "end") {
        const int framesPerSecond = step.word(1).toInt();
        m_film = std::make_unique<Film>(QDir::current().absoluteFilePath(step.word(0)), framesPerSecond,
                                        [this] { return takeShot(&m_hand); });
        m_filmBeat = 1000 / framesPerSecond;
        m_hand.setPace(framesPerSecond);
        if (!m_film->isWell()) {
            finish(QString("%1 cannot be written").arg(step.word(0)));
        }
        return Outcome::done();
    }
    if (m_film == nullptr) {
        finish("no film is being made");
        return Outcome::done();
    }
    print(QString("%1 frames").arg(m_film->frames()));
    if (!m_film->end()) {
        finish("the film could not be written");
    }
    m_film.reset();
    m_hand.setPace(0);
    return Outcome::done();
}

Outcome Player::cue(const Step &step) {
    if (m_film == nullptr) {
        finish("no film is being made");
        return Outcome::done();
    }
    print(QString("cue %1 %2").arg(step.word(0)).arg(m_film->frames()));
    return Outcome::done();
}

} // namespace lumora::play
