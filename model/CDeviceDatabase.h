#pragma once

#include <QAbstractTableModel>
#include <QMap>
#include <QString>
#include <QVector>

/// All that is known of the one connected unit, and what the tool says about it: a table of one row
/// and 44 columns that the widgets follow. Writers use the setters, each of which notifies its
/// column also when the value is the same; the item interface refuses writes.
///
/// Columns: 0 connect button, 1 application status, 2 connection status, 3 IP address, 4 MAC
/// address, 5 subnet mask, 6 firmware version; EEPROM data set 0 in 7 to 13 (part number, variant,
/// product index, serial number, production date, test instruction index, name), set 1 in 14 to 19
/// (the same without the variant); motor parameters in 20 to 31 (azimuth) and 32 to 43 (polar).
///
/// To be used in the main thread only.
class CDeviceDatabase : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum ConnectionStatus
    {
        ConnectionConnected = 0,
        ConnectionConnecting = 1,
        ConnectionNotConnected = 2,
        ConnectionFailed = 3,
        ConnectionReconnecting = 4,
    };

    CDeviceDatabase();
    ~CDeviceDatabase() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Texts, but integers for the parameters 0 to 10. Does not look at the row.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    QString GetIpAddress() const;
    QString GetMacAddress() const;
    QString GetSubnetMask() const;
    QString GetPartNumber() const;
    QString GetSerialNumber() const;
    /// As the unit gave it, with the carriage return of its answer.
    QString GetFirmwareVersion() const;
    QString ConnectionStatusText() const;
    /// 65535 and not found when the azimuth motor lacks the parameter, whichever motor is asked
    /// for; else the motor's value, or 0 when it has none, and found. `motor` is 0 or 1.
    ushort GetMotorParameter(int motor, int parameter, bool* found = nullptr) const;
    /// Adds all that is stored for the motor to `out`. False, and nothing added, for a `motor`
    /// above 1.
    bool GetMotorParameters(int motor, QMap<int, ushort>& out) const;
    QString GetMotorValidationError(int motor) const;
    /// Whether the unit lacks what some tabs need. Nothing sets it as yet.
    bool GetUnsupportedFlag() const;
    /// The firmware generation. A version that does not read as a number counts as 0.
    bool IsFirmwareBelowVersion3() const;
    /// False for an empty text, for one that begins with a letter from A to F, and for one without
    /// six pairs of upper-case digits joined by ':' or '-'; `error` says which, and is left alone
    /// otherwise.
    bool ValidateMacAddress(QString mac, QString& error) const;

    void SetConnectionStatus(int code);
    void SetApplicationStatus(QString text);
    /// False, and an empty column, when the text is no address.
    bool SetIpAddress(QString text);
    void SetMacAddress(QString text);
    /// False, and an empty column, when the text is no mask.
    bool SetSubnetMask(QString text);
    void SetFirmwareVersion(QString text);
    // `set`: 0 for the EEPROM block of the device, 1 for the one of the board; another is ignored,
    // but for the variant, which both share.
    void SetPartNumber(QString text, int set = 0);
    void SetVariant(QString text, int set = 0);
    void SetProductIndex(QString text, int set = 0);
    /// Keeps the first six characters.
    void SetSerialNumber(QString text, int set = 0);
    void SetProductionDate(QString text, int set = 0);
    void SetTestInstructionIndex(QString text, int set = 0);
    void SetBoardName(QString text, int set = 0);
    // `motor`: 0 azimuth, 1 polar; for another nothing is stored.
    /// The parameters from 0 on, as many as there are values.
    void SetMotorParameters(int motor, QVector<ushort> values);
    void SetMotorParameter(int motor, int parameter, ushort value);
    void SetMotorValidationError(int motor, QString text);
    /// Forgets the unit, but for the variant. The columns of the parameters are not notified.
    void ResetData();

private:
    QString ConnectButtonText() const;
    QVariant MotorColumn(int motor, int parameter) const;
    void NotifyColumnChanged(int column);
    bool SetAddress(QString& address, int column, const QString& text);
    void SetOfSet(QString (&field)[2], const int (&columns)[2], const QString& text, int set);
    static bool NormalizeIpAddress(const QString& text, QString& out);

    qint32 connectionStatus = ConnectionNotConnected;
    bool unsupported = false;
    QString applicationStatus;
    QString ipAddress;
    QString macAddress;
    QString subnetMask;
    QString partNumber[2];
    QString productIndex[2];
    QString variant;
    QString serialNumber[2];
    QString productionDate[2];
    QString testInstructionIndex[2];
    QString boardName[2];
    QString firmwareVersion;
    QMap<int, ushort> motorParameters[2];
    QString motorValidationError[2];
};

/// The one model, valid from before main until the process ends.
CDeviceDatabase* TheDeviceDatabase();
