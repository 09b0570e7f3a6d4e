#include "corvane/photos_scripting/PhotosRemoteManager.hpp"

#include "corvane/helpers/ArrayMoves.hpp"
#include "corvane/helpers/DefaultsData.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfileFile.hpp"

#include <algorithm>

namespace corvane {

std::optional<PhotosRemoteManager::ProfileEdition>
PhotosRemoteManager::profileEdition(const Notification& note) {
    if (note.name() != didChangeProfilesNotification) return std::nullopt;
    if (auto edition = note.userInfoValue<ProfileEdition>(std::string(profileEditionKey))) return *edition;
    return std::nullopt;
}

const std::shared_ptr<PhotosRemoteManager>& PhotosRemoteManager::shared() {
    static const std::shared_ptr<PhotosRemoteManager> instance = create();
    return instance;
}

std::shared_ptr<PhotosRemoteManager> PhotosRemoteManager::create() {
    return std::shared_ptr<PhotosRemoteManager>(new PhotosRemoteManager());
}

std::vector<PhotosRemoteProfileRef> PhotosRemoteManager::profiles() const {
    return atomic.read([this] { return nonAtomicProfiles; });
}

std::vector<PhotosRemoteProfileRef> PhotosRemoteManager::selectedProfiles() const {
    return atomic.read([this] { return nonAtomicSelectedProfiles; });
}

// Each change decides inside the write pass whether it changed anything, and informs after it, so
// that observers may read the lists.

bool PhotosRemoteManager::replaceList(std::vector<PhotosRemoteProfileRef>& list,
                                      std::vector<PhotosRemoteProfileRef> profiles) {
    return atomic.write([&] {
        if (profiles == list) return false;
        list = std::move(profiles);
        return true;
    });
}

void PhotosRemoteManager::setProfiles(std::vector<PhotosRemoteProfileRef> profiles) {
    if (replaceList(nonAtomicProfiles, std::move(profiles))) informsDidChangeProfiles(ReloadProfiles{});
}

void PhotosRemoteManager::setSelectedProfiles(std::vector<PhotosRemoteProfileRef> profiles) {
    if (replaceList(nonAtomicSelectedProfiles, std::move(profiles)))
        informsDidChangeProfiles(ReloadSelection{});
}

void PhotosRemoteManager::insertProfiles(std::vector<PhotosRemoteProfileRef> profiles, std::size_t index) {
    if (profiles.empty()) return;
    const std::size_t count = profiles.size();
    const std::size_t at = atomic.write([&] {
        const std::size_t at = std::min(index, nonAtomicProfiles.size());
        nonAtomicProfiles.insert(nonAtomicProfiles.begin() + static_cast<std::ptrdiff_t>(at),
                                 std::make_move_iterator(profiles.begin()),
                                 std::make_move_iterator(profiles.end()));
        return at;
    });
    informsDidChangeProfiles(InsertProfiles{IndexSet::range(at, at + count)});
}

void PhotosRemoteManager::removeProfiles(const IndexSet& indexes) {
    IndexSet removed;
    atomic.write([&] {
        for (auto i : indexes)
            if (i < nonAtomicProfiles.size()) removed.insert(i);
        removed.removeFrom(nonAtomicProfiles);
    });
    if (!removed.isEmpty()) informsDidChangeProfiles(RemoveProfiles{removed});
}

void PhotosRemoteManager::moveProfiles(const IndexSet& indexes, std::size_t toOffset) {
    if (indexes.isEmpty()) return;
    atomic.write([&] { moveElements(nonAtomicProfiles, indexes, toOffset); });
    informsDidChangeProfiles(MoveProfiles{indexes, toOffset});
}

void PhotosRemoteManager::selectProfile(const PhotosRemoteProfileRef& profile) {
    setSelectedProfiles(profile ? std::vector<PhotosRemoteProfileRef>{profile}
                                : std::vector<PhotosRemoteProfileRef>{});
}

void PhotosRemoteManager::informsDidChangeProfiles(ProfileEdition edition) {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeProfilesNotification), shared_from_this(),
                     {{std::string(profileEditionKey), std::move(edition)}}));
}

void PhotosRemoteManager::loadFromDefaults() {
    const auto stored = readDefaultsData(std::string(profilesUserDefaultsKey));
    if (!stored) return;
    setProfiles(PhotosRemoteProfileFile::fromJSONData(stored->bytes, stored->source).profiles());
}

void PhotosRemoteManager::saveToDefaults() const {
    writeDefaultsData(std::string(profilesUserDefaultsKey),
                      PhotosRemoteProfileFile(std::nullopt, profiles()).jsonData());
}

} // namespace corvane
