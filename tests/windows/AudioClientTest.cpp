#include "SDMMNotificationClient.h"

#include "DeviceManager.h"
#include "LogCapture.h"

#include <QtTest>

namespace {

ComPtr<IMMDeviceEnumerator> makeEnumerator()
{
    ComPtr<IMMDeviceEnumerator> enumerator;
    ::CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_SERVER,
                       __uuidof(IMMDeviceEnumerator), enumerator.putVoid());
    return enumerator;
}

} // namespace

/// The client of the audio endpoints' notifications, called as the audio system calls it.
class AudioClientTest : public QObject
{
    Q_OBJECT

private slots:
    void returnsItsInterfacesOnly();
    void countsItsReferences();
    void everyNotificationIsLogged_data();
    void everyNotificationIsLogged();
    void unknownEndpointIsLoggedWithoutName();
    void missingIdIsHarmless();
    void registersWithTheAudioSystem();
    void managerRegistersOnEveryStart();

private:
    ComApartment m_com;
};

void AudioClientTest::returnsItsInterfacesOnly()
{
    const ComPtr<SDMMNotificationClient> client(new SDMMNotificationClient);
    QVERIFY(client.query<IUnknown>());
    QVERIFY(client.query<IMMNotificationClient>());
    void* object = this;
    QCOMPARE(client->QueryInterface(__uuidof(IMMDeviceEnumerator), &object), E_NOINTERFACE);
    QVERIFY(!object);
    QCOMPARE(client->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

void AudioClientTest::countsItsReferences()
{
    auto* client = new SDMMNotificationClient;
    QCOMPARE(client->AddRef(), 2UL);
    {
        const ComPtr<IMMNotificationClient> held(client);
        const auto queried = held.query<IMMNotificationClient>();
        QCOMPARE(client->AddRef(), 4UL);
        QCOMPARE(client->Release(), 3UL);
    }
    QCOMPARE(client->Release(), 0UL);
}

void AudioClientTest::everyNotificationIsLogged_data()
{
    QTest::addColumn<int>("notification");
    QTest::newRow("state") << 0;
    QTest::newRow("added") << 1;
    QTest::newRow("removed") << 2;
    QTest::newRow("default") << 3;
    QTest::newRow("property") << 4;
}

void AudioClientTest::everyNotificationIsLogged()
{
    QFETCH(int, notification);
    const ComPtr<SDMMNotificationClient> client(new SDMMNotificationClient);
    const LogCapture log;
    constexpr const wchar_t* id = L"endpoint-7";
    HRESULT result = E_FAIL;
    switch (notification) {
    case 0:
        result = client->OnDeviceStateChanged(id, DEVICE_STATE_ACTIVE);
        break;
    case 1:
        result = client->OnDeviceAdded(id);
        break;
    case 2:
        result = client->OnDeviceRemoved(id);
        break;
    case 3:
        result = client->OnDefaultDeviceChanged(eCapture, eConsole, id);
        break;
    default:
        result = client->OnPropertyValueChanged(id, PROPERTYKEY{});
        break;
    }
    QCOMPARE(result, S_OK);
    const QStringList texts = log.texts();
    QCOMPARE(texts.size(), 2);
    QVERIFY(texts.at(0).startsWith(QLatin1String("SDMMNotificationClient::_PrintDeviceID")));
    QVERIFY(texts.at(0).contains(QLatin1String("endpoint-7")));
    QVERIFY(texts.at(1).startsWith(QLatin1String("SDMMNotificationClient::_PrintDeviceName")));
}

void AudioClientTest::unknownEndpointIsLoggedWithoutName()
{
    const ComPtr<SDMMNotificationClient> client(new SDMMNotificationClient);
    const LogCapture log;
    QVERIFY(FAILED(client->_PrintDeviceName(L"endpoint-7")));
    QCOMPARE(log.texts().size(), 2);
}

void AudioClientTest::missingIdIsHarmless()
{
    const ComPtr<SDMMNotificationClient> client(new SDMMNotificationClient);
    const LogCapture log;
    QCOMPARE(client->OnDefaultDeviceChanged(eCapture, eConsole, nullptr), S_OK);
    QCOMPARE(log.texts().size(), 2);
}

void AudioClientTest::registersWithTheAudioSystem()
{
    const ComPtr<SDMMNotificationClient> client(new SDMMNotificationClient);
    QVERIFY(client->registerCallback(makeEnumerator()));
    QVERIFY(client->registerCallback(makeEnumerator()));
    client->unregisterCallback();
}

void AudioClientTest::managerRegistersOnEveryStart()
{
    const LogCapture log;
    DeviceManager& manager = DeviceManager::instance();
    manager.start();
    manager.start();
    manager.stop();
    const QStringList texts = log.texts(QtCriticalMsg);
    QCOMPARE(texts.filter(QStringLiteral("接口创建成功")).size(), 2);
    QCOMPARE(texts.filter(QStringLiteral("注册成功")).size(), 2);
}

QTEST_GUILESS_MAIN(AudioClientTest)
#include "AudioClientTest.moc"
