// A Qt program as the other side of the clipboard:
//   client set text|image|files   the content from standard input; owns it until it is ended
//   client get text|image|files   the content to standard output; an image as PNG
//   client edit                   a text editor; its state as a line of JSON at every change
#include <cstdio>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

void set(QClipboard& clipboard, const QString& what, const QByteArray& content) {
    if (what == u"text"_s)
        clipboard.setText(QString::fromUtf8(content));
    if (what == u"image"_s)
        clipboard.setImage(QImage::fromData(content));
    if (what == u"files"_s) {
        QList<QUrl> urls;
        for (const QByteArray& path : content.split('\n'))
            urls << QUrl::fromLocalFile(QString::fromUtf8(path));
        auto* data = new QMimeData;
        data->setUrls(urls);
        clipboard.setMimeData(data);
    }
}

QByteArray contentOf(const QClipboard& clipboard, const QString& what) {
    if (what == u"text"_s)
        return clipboard.text().toUtf8();
    if (what == u"image"_s) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        clipboard.image().save(&buffer, "PNG");
        return png;
    }
    QByteArrayList paths;
    for (const QUrl& url : clipboard.mimeData()->urls())
        paths << url.toLocalFile().toUtf8();
    return paths.join('\n');
}

int edit(int argc, char** argv) {
    const QApplication application(argc, argv);
    QPlainTextEdit editor;
    editor.setWindowTitle(u"Editor"_s);
    const auto report = [&editor] {
        const QJsonObject state{{u"text"_s, editor.toPlainText()},
                                {u"window"_s, static_cast<qint64>(editor.winId())},
                                {u"active"_s, editor.isActiveWindow()}};
        std::puts(QJsonDocument(state).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    };
    QObject::connect(&editor, &QPlainTextEdit::textChanged, report);
    QObject::connect(&application, &QGuiApplication::focusWindowChanged, report);
    editor.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && QByteArrayView(argv[1]) == "edit")
        return edit(argc, argv);
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3)
        return 2;
    QFile standard;
    if (arguments[1] == u"set"_s) {
        if (!standard.open(stdin, QIODevice::ReadOnly))
            return 1;
        set(*QGuiApplication::clipboard(), arguments[2], standard.readAll());
        return application.exec();
    }
    if (!standard.open(stdout, QIODevice::WriteOnly))
        return 1;
    standard.write(contentOf(*QGuiApplication::clipboard(), arguments[2]));
    return 0;
}
