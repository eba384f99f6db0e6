#include "admin/console/Console.h"

#include "admin/console/PasswordText.h"
#include "backend/store/TextRules.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace admin {

namespace {

constexpr char interrupt = 3;
constexpr char endOfInput = 4;
constexpr char backspace = 8;
constexpr char rubout = 127;

// The terminal without echo and without signals, so that Ctrl+C cannot leave it mute.
class MuteTerminal
{
public:
    explicit MuteTerminal(int descriptor) : m_descriptor(descriptor)
    {
        m_isMute = ::tcgetattr(descriptor, &m_before) == 0;
        termios mute = m_before;
        mute.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON | ISIG);
        m_isMute = m_isMute && ::tcsetattr(descriptor, TCSAFLUSH, &mute) == 0;
    }
    ~MuteTerminal()
    {
        if (m_isMute)
            ::tcsetattr(m_descriptor, TCSAFLUSH, &m_before);
    }
    MuteTerminal(const MuteTerminal&) = delete;
    MuteTerminal& operator=(const MuteTerminal&) = delete;

    bool isMute() const { return m_isMute; }

private:
    int m_descriptor;
    bool m_isMute = false;
    termios m_before = {};
};

void chopCharacter(QByteArray* text)
{
    while (!text->isEmpty() && (text->back() & 0xc0) == 0x80)
        text->chop(1);
    text->chop(1);
}

std::optional<QByteArray> readLine(int terminal)
{
    QByteArray text;
    char byte = 0;
    while (true) {
        const ssize_t count = ::read(terminal, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 || byte == interrupt || (byte == endOfInput && text.isEmpty()))
            return std::nullopt;
        if (byte == '\n' || byte == '\r')
            return text;
        if (byte == backspace || byte == rubout)
            chopCharacter(&text);
        else
            text.append(byte);
    }
}

void writeTo(int descriptor, const QByteArray& bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.constData() + written,
                                      static_cast<size_t>(bytes.size() - written));
        if (count <= 0)
            return;
        written += count;
    }
}

} // namespace

void say(const QString& line)
{
    std::fputs(line.toUtf8().constData(), stdout);
    std::fputc('\n', stdout);
}

void complain(const QString& line)
{
    QString harmless = line;
    for (QChar& character : harmless) {
        if (!character.isSurrogate() && character != QLatin1Char('\n') &&
            backend::hasHostileCharacter(QString(character)))
            character = QChar::ReplacementCharacter;
    }
    std::fputs(harmless.toUtf8().constData(), stderr);
    std::fputc('\n', stderr);
}

std::optional<QString> askPassword(const QString& question, const QString& fileOption,
                                   QString* error)
{
    const int terminal = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0) {
        *error = QStringLiteral("没有终端可以输入密码；请用 %1").arg(fileOption);
        return std::nullopt;
    }
    std::optional<QByteArray> password;
    {
        const MuteTerminal mute(terminal);
        if (mute.isMute()) {
            writeTo(terminal, question.toUtf8());
            password = readLine(terminal);
            writeTo(terminal, "\n");
        }
    }
    ::close(terminal);
    if (!password) {
        *error = QStringLiteral("没有输入密码");
        return std::nullopt;
    }
    return passwordText(*password, error);
}

std::optional<QString> askNewPassword(const QString& question, const QString& fileOption,
                                      QString* error)
{
    std::optional<QString> password = askPassword(question, fileOption, error);
    if (!password)
        return std::nullopt;
    const std::optional<QString> again =
        askPassword(QStringLiteral("再次输入："), fileOption, error);
    if (!again)
        return std::nullopt;
    if (*again != *password) {
        *error = QStringLiteral("两次输入的密码不同，密码未修改");
        return std::nullopt;
    }
    return password;
}

} // namespace admin
