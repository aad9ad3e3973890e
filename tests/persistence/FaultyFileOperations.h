// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileOperations.h"

#include <functional>

namespace quillabrae::persistence {

/// The system's file operations, each step of which can be made to go wrong. Steps are numbered
/// from 0 in the order in which they are taken; looking at a folder is no step.
class FaultyFileOperations final : public platform::FileOperations {
public:
    enum class Exchange { works, isUnsupported };

    explicit FaultyFileOperations(Exchange exchange = Exchange::works) : m_exchange(exchange) {}

    /// Called before every step with its number and name; what it throws is the step's failure.
    std::function<void(int step, const char* name)> beforeStep = [](int, const char*) {};

    int stepCount() const { return m_stepCount; }

    void makePath(const QString& folder) override {
        take("makePath");
        m_system.makePath(folder);
    }
    std::unique_ptr<platform::DurableFile> createFile(const QString& path) override {
        take("createFile");
        return std::make_unique<File>(*this, m_system.createFile(path));
    }
    void syncFolder(const QString& folder) override {
        take("syncFolder");
        m_system.syncFolder(folder);
    }
    bool exchange(const QString& a, const QString& b) override {
        if (m_exchange == Exchange::isUnsupported) return false;
        take("exchange");
        return m_system.exchange(a, b);
    }
    void rename(const QString& from, const QString& to) override {
        take("rename");
        m_system.rename(from, to);
    }
    void removeTree(const QString& path) override {
        take("removeTree");
        m_system.removeTree(path);
    }
    void adoptPermissions(const QString& from, const QString& to) override {
        m_system.adoptPermissions(from, to);
    }
    bool isWritable(const QString& path) override { return m_system.isWritable(path); }
    bool exists(const QString& path) override { return m_system.exists(path); }
    QStringList entries(const QString& folder) override { return m_system.entries(folder); }

private:
    class File final : public platform::DurableFile {
    public:
        File(FaultyFileOperations& owner, std::unique_ptr<platform::DurableFile> file)
            : m_owner(owner), m_file(std::move(file)) {}

        void write(std::span<const char> bytes) override {
            const auto half = bytes.size() / 2;
            m_file->write(bytes.first(half));
            if (!m_wasWritten) m_owner.take("write");
            m_wasWritten = true;
            m_file->write(bytes.subspan(half));
        }
        void finish() override {
            m_owner.take("finish");
            m_file->finish();
        }

    private:
        FaultyFileOperations& m_owner;
        std::unique_ptr<platform::DurableFile> m_file;
        bool m_wasWritten = false;
    };

    void take(const char* name) { beforeStep(m_stepCount++, name); }

    platform::FileOperations& m_system = platform::systemFileOperations();
    Exchange m_exchange;
    int m_stepCount = 0;
};

} // namespace quillabrae::persistence
