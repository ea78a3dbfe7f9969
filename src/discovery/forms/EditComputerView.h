#pragma once

#include "model/RemoteComputer.h"

#include <QMap>
#include <QObject>
#include <QString>

class AppState;

// The edit form without its window: connection settings, credentials, description and tags
// of one configured computer, each connection field checked as it changes.
class EditComputerView : public QObject {
    Q_OBJECT

public:
    // Keys of validationErrors().
    static inline const QString hostKey = QStringLiteral("host");
    static inline const QString portKey = QStringLiteral("port");
    static inline const QString usernameKey = QStringLiteral("username");
    static inline const QString passwordKey = QStringLiteral("password");

    EditComputerView(AppState &appState, const RemoteComputer &computer, QObject *parent = nullptr);

    const QUuid &computerId() const { return m_computer.id; }
    // "Configure connection settings for " and the computer's display name.
    QString subtitle() const;

    // The texts as typed (never trimmed).
    const QString &name() const { return m_name; }
    const QString &host() const { return m_host; }
    const QString &port() const { return m_port; }
    const QString &username() const { return m_username; }
    const QString &password() const { return m_password; }
    const QString &description() const { return m_description; }
    const QString &tags() const { return m_tags; }
    void setName(const QString &name) { m_name = name; }
    void setHost(const QString &host);
    void setPort(const QString &port);
    void setUsername(const QString &username);
    void setPassword(const QString &password);
    void setDescription(const QString &description) { m_description = description; }
    void setTags(const QString &tags) { m_tags = tags; }

    const QMap<QString, QString> &validationErrors() const { return m_validationErrors; }
    bool isFormValid() const { return m_isFormValid; }
    bool isPresented() const { return m_isPresented; }

    // The form appeared: every rule runs, host, port, username, password in that order.
    void appear();
    void cancel();
    // Writes the fields into the computer as it is now in the store (its status and
    // statistics may have changed meanwhile) and closes. A computer that was removed
    // meanwhile is left alone.
    void save();

Q_SIGNALS:
    // One rule ran; its key's message (or none) and isFormValid() are current.
    void validated(const QString &key);
    void closed();

private:
    void validate(const QString &key);
    void close();

    AppState &m_appState;
    const RemoteComputer m_computer;
    QString m_name;
    QString m_host;
    QString m_port;
    QString m_username;
    QString m_password;
    QString m_description;
    QString m_tags;
    QMap<QString, QString> m_validationErrors;
    bool m_isFormValid = true;
    bool m_isPresented = true;
};
