#!/usr/bin/env bash
# check.sh LIBRARY OBJECT...: fails when a factory or a free function is missing from the library's
# exports, when a header offers a function that the library of these objects keeps to itself, when
# something leaks out of it, or when it needs more than the standard library.
set -euo pipefail
library=$1
shift
exports=$(nm -DC --defined-only "$library" | sed 's/\[abi:cxx11\]//')
failed=0

complain() {
  echo "$1" >&2
  failed=1
}

for function in classMapKivToOcSmFactory classMapTypeSmFactory classMapSmFactory \
  aclKivToOcSmFactory aclTypeSmFactory aclConfigSmFactory aclSubConfigSmFactory \
  classActionKivToOcSmFactory pmapTypeSmFactory pmapConfigSmFactory classActionSmFactory \
  policyActionSmFactory interfaceClassifierKivToOcSmFactory servicePolicySmFactory \
  forwardingGroupKivToOcSmFactory pfcKivToOCSmFactory intfPfcKivToOCSmFactory \
  interfaceConfigSmFactory priorityConverter \
  queueKivToOcSmFactory intfSmFactory txQueueSmFactory \
  queueManagementProfileKivToOcSmFactory queueManagementProfileQosProfileSmFactory \
  queueManagementProfileQosProfileTxQueueSmFactory queueManagementProfileIntfSmFactory \
  queueManagementProfileTxQueueSmFactory \
  schedulerPolicyKivToOCSmFactory schedulerPolicyIntfSmFactory schedulerPolicyTxQueueSmFactory \
  classifierNameFromClassName classifierKeyFromConfigObjName \
  classifiersFromPmapName classifierGroupFromPmapName targetGroupFromTc; do
  grep -q " T QosOc::$function(" <<<"$exports" || complain "not exported: QosOc::$function"
done
# The codecs of comments and of profile names stand outside the namespace; the helper's operations and
# the comment values are for the code that writes comments.
for function in encodeQMPProfileName decodeQMPProfileName encodeSPProfileName decodeSPProfileName \
  serializeJsonComment deserializeJsonComment serializeJsonProfileComment \
  deserializeJsonProfileComment QosOc::commentHelperFactory QosOc::CommentHelper::CommentHelperIs \
  QosOc::CommentHelper::commentKey QosOc::CommentHelper::profileCommentKey \
  QosOc::CommentHelper::createSchedulerPolicyComment \
  QosOc::CommentHelper::deleteSchedulerPolicyComment \
  QosOc::CommentHelper::schedulerPolicyInfoFromComment \
  QosOc::CommentHelper::createQueueManagementProfileComment \
  QosOc::CommentHelper::deleteQueueManagementProfileComment \
  QosOc::CommentHelper::queueManagementProfileInfoFromComment \
  QosOc::CommentHelper::createSchedulerPolicyProfileComment \
  QosOc::CommentHelper::schedulerPolicyProfileInfoFromComment \
  QosOc::SchedulerCommentInfo::inputs QosOc::SchedulerCommentInfo::inputsIs \
  QosOc::SchedulerCommentInfo::inputsDel QosOc::SchedulerCommentInfo::operator== \
  QosOc::SchedulerPolicyProfileCommentInfo::schedulers \
  QosOc::SchedulerPolicyProfileCommentInfo::schedulersIs \
  QosOc::SchedulerPolicyProfileCommentInfo::schedulersDel \
  QosOc::SchedulerPolicyProfileCommentInfo::operator== \
  QosOc::sequenceToValue QosOc::SchedulerPriorityCommentInfoInstance; do
  grep -qF " T $function(" <<<"$exports" || complain "not exported: $function"
done
for function in stringValue valueToStrep rokEnumType; do
  function="QosOc::$function(QosOc::SchedulerPriorityCommentInfo)"
  grep -qF " T $function" <<<"$exports" || complain "not exported: $function"
done
for class in SchedulerInput OneRateTwoColor Scheduler SchedulerPolicyProfile SchedulerPolicy \
  QueueManagementProfile ""; do
  value=QosOc::${class}CommentInfo
  for function in "QosOc::valueToStrep($value const&)" "$value::${class}CommentInfo(Rok::CharRange&)" \
    "QosOc::operator<<(std::ostream&, $value const&)"; do
    grep -qF " T $function" <<<"$exports" || complain "not exported: $function"
  done
done
if foreign=$(grep -i rapidjson <<<"$exports"); then
  complain "exported although it is RapidJSON's: $foreign"
fi
# What is defined and not exported must come from a header that only the library's sources include.
own='^QosOc::(ClassifierUnit|Helper)::(configObjName|firstGroupName|pathOf|jsonAssertionFailed|'
own+='nameInProfileName|pmapClassifiers|requireGroupNames|requireQueueNames)\('
functions() { sed -nE 's/^[0-9a-f]+ [TW] //p' | sort -u; }
defined=$(nm -C --defined-only "$@" | sed 's/\[abi:cxx11\]//' | sed -nE 's/^[0-9a-f]+ T //p' | sort -u)
hidden=$(comm -23 <(printf '%s\n' "$defined") <(functions <<<"$exports") | grep -vE "$own" || true)
if [[ -n $hidden ]]; then
  complain "a header offers it, and the library doesn't export it: $hidden"
fi
if leaked=$(grep -E " [TW] QosOc::(ClassifierUnit|Helper::json)" <<<"$exports"); then
  complain "exported although it is the library's own affair: $leaked"
fi
needed=$(objdump -p "$library" | awk '$1 == "NEEDED" { print $2 }')
while read -r name; do
  case $name in
    libstdc++.so.* | libgcc_s.so.* | libc.so.* | libm.so.* | ld-linux*) ;;
    libasan.so.* | libubsan.so.*) ;; # a sanitizer build brings its runtime along
    *) complain "needs more than the standard library: $name" ;;
  esac
done <<<"$needed"
exit $failed
